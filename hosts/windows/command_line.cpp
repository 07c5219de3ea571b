#include "command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>

#include "HostError.h"
#include "Reporter.h"
#include "own_program.h"

namespace ondura {

void AddWindowsHostOptions(CLI::App& app, WindowsHostOptions& options) {
  options.install = OwnFolder();
  app.add_option("--install", options.install, "Install folder; that of this program by default")
      ->type_name("PATH");
  AddTickOptions(app, options);
}

std::optional<int> ParseCommandLine(CLI::App& app) {
  std::vector<std::string> words = CommandLineWords();
  words.erase(words.begin());
  std::ranges::reverse(words);  // the parser takes them from the end
  try {
    app.parse(std::move(words));
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : kExitUsage;
  }
  return std::nullopt;
}

int Guard(const Reporter& reporter, const std::function<int()>& run) {
  try {
    return run();
  } catch (const HostError& error) {
    reporter.Error(error.what());
    return error.exit_code();
  } catch (const std::exception& error) {
    reporter.Error(error.what());
  } catch (...) {
    reporter.Error("stopped by an unknown error.");
  }
  return kExitFailure;
}

int GuardedMain(const std::string& source, const std::function<int()>& run) {
  return Guard(UsualReporter(source), run);
}

}  // namespace ondura
