#pragma once

#include "host_options.h"
#include "machines/posix/StopSignals.h"
#include "platform/machine.h"

namespace ondura {

// Each runs one host to its end on the machine and returns the exit code.
int RunService(const Machine& machine, const HostOptions& options, const StopSignals& stop);
int RunBackground(const Machine& machine, const HostOptions& options, const StopSignals& stop);
int RunElevated(const Machine& machine, const HostOptions& options, const StopSignals& stop);

}  // namespace ondura
