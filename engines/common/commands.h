#pragma once

#include <string>

#include "engine/engine_command.h"
#include "engines/common/Store.h"

namespace ondura::engines {

// Does what the command asks for and leaves the result in RetValue of the user's profile.
void RunEngineCommand(Client& client, Store& store, const EngineCall& call);

// Says on stderr which commands there are, for a command line that is not one. Returns the exit code.
int RefuseCommand(const char* name, const std::string& command_line);

}  // namespace ondura::engines
