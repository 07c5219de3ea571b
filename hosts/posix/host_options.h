#pragma once

#include <optional>
#include <string>

#include "tick_options.h"

namespace ondura {

enum class HostRole { kService, kBackground, kElevated };

// What `ondura-host` was told on its command line.
struct HostOptions : TickOptions {
  HostRole role = HostRole::kService;
  std::string root;                                     // the machine's folder
  std::string install = R"(C:\Program Files\Ondura\)";  // as the component sees it
};

// The options, or the code to leave with at once: 0 after --help and --version, which have been printed, and
// kExitUsage after an error text on stderr.
struct ParsedOptions {
  std::optional<HostOptions> options;
  int exit_code = 0;
};

ParsedOptions ParseHostOptions(int argc, const char* const* argv);

}  // namespace ondura
