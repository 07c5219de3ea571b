#pragma once

#include "command_line.h"
#include "reporter.h"
#include "stop_event.h"

namespace ondura {

// The elevated host: asks the component again and again whether somebody wants a shadow copy or a database
// dump, which take rights that a job may lack. An operation that the installed component does not have is
// left out, with one note. Throws HostError.
void RunElevated(const WindowsHostOptions& options, const StopEvent& stop, const Reporter& reporter);

}  // namespace ondura
