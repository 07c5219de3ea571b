#pragma once

#include <chrono>
#include <cstdint>

#include "tick_options.h"

namespace ondura {

// Calls `tick` at once and then once a period, until the wanted number of ticks is done or the host is asked
// to stop. A tick that has begun is never cut short.
//
// `stop` has Requested() and WaitFor(duration), which returns sooner when a stop is requested.
template <class Stop, class Tick>
void RunTicks(const TickOptions& options, const Stop& stop, const Tick& tick) {
  const auto pause = std::chrono::duration_cast<std::chrono::nanoseconds>(
      std::chrono::duration<double>{options.period_seconds / options.speed});
  for (std::uint64_t done = 0; !options.ticks || done < *options.ticks; ++done) {
    if (done > 0) stop.WaitFor(pause);
    if (stop.Requested()) return;
    tick();
  }
}

}  // namespace ondura
