#pragma once

#include "Reporter.h"
#include "StopEvent.h"
#include "command_line.h"

namespace ondura {

// The elevated host: asks again and again whether somebody wants a shadow copy or a database dump, which take
// rights that a job may lack. It reads the installation alone: users and jobs keep their state. Throws
// HostError.
void RunElevated(const WindowsHostOptions& options, const StopEvent& stop, const Reporter& reporter);

}  // namespace ondura
