#pragma once

#include "engine/engine_command.h"
#include "engines/common/Store.h"

namespace ondura::engines {

// Does what the command asks for and leaves the result in RetValue of the user's profile.
void RunEngineCommand(Client& client, Store& store, const EngineCall& call);

}  // namespace ondura::engines
