#pragma once

namespace ondura {

// Hands this thread to the service manager, which runs the scheduling host in the service's own thread.
// Returns when the service has stopped; throws HostError when the service manager did not start this process.
void RunServiceProcess();

}  // namespace ondura
