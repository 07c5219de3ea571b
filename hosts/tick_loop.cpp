#include "tick_loop.h"

#include <chrono>

namespace ondura {

void RunTicks(const HostOptions& options, const StopSignals& stop, const std::function<void()>& tick) {
  const auto pause = std::chrono::duration_cast<std::chrono::nanoseconds>(
      std::chrono::duration<double>{options.period_seconds / options.speed});
  for (std::uint64_t done = 0; !options.ticks || done < *options.ticks; ++done) {
    if (done > 0) stop.WaitFor(pause);
    if (stop.Requested()) return;
    tick();
  }
}

}  // namespace ondura
