#pragma once

#include <functional>
#include <optional>
#include <string>

#include "Reporter.h"
#include "tick_options.h"

namespace CLI {
class App;
}

namespace ondura {

// What every host of this system can be told.
struct WindowsHostOptions : TickOptions {
  std::string install;  // install folder; that of the program unless told otherwise
};

void AddWindowsHostOptions(CLI::App& app, WindowsHostOptions& options);

// Reads this process's command line. The code to leave with at once, or nothing when the host is to run.
std::optional<int> ParseCommandLine(CLI::App& app);

// A failure of `run` is reported and becomes the exit code.
int Guard(const Reporter& reporter, const std::function<int()>& run);

// Guards a host's main function. `source` is the program's name.
int GuardedMain(const std::string& source, const std::function<int()>& run);

}  // namespace ondura
