#pragma once

#include <functional>

#include "StopEvent.h"
#include "command_line.h"

namespace ondura {

// Each runs one host to its end on this thread; throw HostError when it can't begin. A tick that fails is
// reported, and the host goes on.

// The scheduling service: starts the component and ticks it. `ready` is called in between, when product and
// component have been found.
void RunScheduling(const WindowsHostOptions& options, const StopEvent& stop, const Reporter& reporter,
                   const std::function<void()>& ready);

// The twin in the user's session, in charge while it runs: makes the passes itself.
void RunBackground(const WindowsHostOptions& options, const StopEvent& stop, const Reporter& reporter);

}  // namespace ondura
