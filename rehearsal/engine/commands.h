#pragma once

#include "rehearsal/common/Client.h"
#include "rehearsal/common/command_line.h"

namespace ondura::rehearsal {

// Does what the command asks for and leaves the result in RetValue of the user's profile. False for a
// number that is no command of the engine; then nothing is written.
bool RunEngineCommand(Client& client, const EngineCommand& command);

}  // namespace ondura::rehearsal
