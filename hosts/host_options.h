#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace ondura {

enum class HostRole { kService, kBackground };

// What `ondura-host` was told on its command line.
struct HostOptions {
  HostRole role = HostRole::kService;
  std::string root;                                     // the machine's folder
  std::string install = R"(C:\Program Files\Ondura\)";  // as the component sees it
  double period_seconds = 20;
  std::optional<std::uint64_t> ticks;  // leave after so many
  int speed = 1;                       // divides every wait
};

// Exit codes beside 0.
inline constexpr int kExitFailure = 1;
inline constexpr int kExitUsage = 2;

// The options, or the code to leave with at once: 0 after --help and --version, which have been printed, and
// kExitUsage behind an error text on stderr.
struct ParsedOptions {
  std::optional<HostOptions> options;
  int exit_code = 0;
};

ParsedOptions ParseHostOptions(int argc, const char* const* argv);

}  // namespace ondura
