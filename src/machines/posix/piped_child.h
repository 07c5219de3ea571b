#pragma once

#include <memory>
#include <string>

#include "platform/PipedProgram.h"

namespace ondura {

// Starts a program of the host with pipes. Null if it could not be started. A bare name is looked for in the
// folders of PATH.
std::unique_ptr<PipedProgram> StartPiped(const PipedRequest& request);

}  // namespace ondura
