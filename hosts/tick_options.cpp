#include "tick_options.h"

#include <CLI/CLI.hpp>

namespace ondura {

namespace {

// A period of nothing would keep a processor busy for ever.
constexpr double kShortestPeriod = 0.1;
constexpr double kLongestEngineLimit = 24.0 * 366;

}  // namespace

void AddTickOptions(CLI::App& command, TickOptions& options) {
  command.add_option("--period", options.period_seconds, "Time between two ticks")
      ->check(CLI::Range(kShortestPeriod, 86400.0))
      ->capture_default_str()
      ->type_name("SECONDS");
  command.add_option("--ticks", options.ticks, "Leave with 0 after so many ticks")
      ->check(CLI::NonNegativeNumber)
      ->type_name("N");
  command
      .add_option("--engine-limit", options.engine_limit_hours,
                  "Stop the job of an engine that runs longer; 0 for never")
      ->check(CLI::Range(0.0, kLongestEngineLimit))
      ->capture_default_str()
      ->type_name("HOURS");
}

}  // namespace ondura
