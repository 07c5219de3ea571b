#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace CLI {
class App;
}

namespace ondura {

// How often a host ticks, and how many times.
struct TickOptions {
  double period_seconds = 20;
  std::optional<std::uint64_t> ticks;  // leave after so many
  int speed = 1;                       // divides every wait
  double engine_limit_hours = 24;      // 0 for none

  [[nodiscard]] std::chrono::milliseconds Period() const { return Milliseconds(period_seconds); }
  [[nodiscard]] std::chrono::milliseconds EngineLimit() const {
    return Milliseconds(engine_limit_hours * 3600);
  }

 private:
  static std::chrono::milliseconds Milliseconds(double seconds) {
    return std::chrono::round<std::chrono::milliseconds>(std::chrono::duration<double>{seconds});
  }
};

// Options --period, --ticks and --engine-limit of a host's command line.
void AddTickOptions(CLI::App& command, TickOptions& options);

// Exit codes of every host beside 0.
inline constexpr int kExitFailure = 1;
inline constexpr int kExitUsage = 2;
inline constexpr int kExitSecondHost = 3;

}  // namespace ondura
