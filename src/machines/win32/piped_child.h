#pragma once

#include <memory>

#include "machines/win32/windows_api.h"
#include "platform/PipedProgram.h"

namespace ondura {

// Starts a program of the system with pipes, as one of the job. Null if it could not be started. A bare name,
// also without ".exe", is looked for beside this program and in the folders of PATH.
std::unique_ptr<PipedProgram> StartPiped(const PipedRequest& request, HANDLE job);

}  // namespace ondura
