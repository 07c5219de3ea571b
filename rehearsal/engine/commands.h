#pragma once

#include "engine/engine_command.h"
#include "rehearsal/common/Client.h"

namespace ondura::rehearsal {

// Does what the command asks for and leaves the result in RetValue of the user's profile.
void RunEngineCommand(Client& client, const EngineCall& call);

}  // namespace ondura::rehearsal
