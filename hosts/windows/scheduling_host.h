#pragma once

#include "command_line.h"
#include "stop_event.h"

namespace ondura {

// Each runs one host to its end on this thread; throw HostError.

// The scheduling service: starts the component and ticks it.
void RunScheduling(const WindowsHostOptions& options, const StopEvent& stop);

// The twin in the user's session, in charge while it runs: makes the passes itself.
void RunBackground(const WindowsHostOptions& options, const StopEvent& stop);

}  // namespace ondura
