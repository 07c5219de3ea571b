#pragma once

#include <functional>

#include "host_options.h"
#include "platform/posix/stop_signals.h"

namespace ondura {

// Calls `tick` at once and then once a period, until the wanted number of ticks is done or the host is asked
// to stop. A tick that has begun is never cut short.
void RunTicks(const HostOptions& options, const StopSignals& stop, const std::function<void()>& tick);

}  // namespace ondura
