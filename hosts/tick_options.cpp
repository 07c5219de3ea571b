#include "tick_options.h"

#include <CLI/CLI.hpp>

namespace ondura {

void AddTickOptions(CLI::App& command, TickOptions& options) {
  command.add_option("--period", options.period_seconds, "Time between two ticks")
      ->check(CLI::Range(0.1, 86400.0))
      ->capture_default_str()
      ->type_name("SECONDS");
  command.add_option("--ticks", options.ticks, "Leave with 0 after so many ticks")
      ->check(CLI::NonNegativeNumber)
      ->type_name("N");
}

}  // namespace ondura
