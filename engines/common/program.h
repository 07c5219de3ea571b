#pragma once

#include <functional>
#include <string>

#include "engines/common/Client.h"

namespace ondura::engines {

// Exit codes of the client's programs.
inline constexpr int kExitDone = 0;
inline constexpr int kExitUnusable = 2;  // wrong arguments, or no machine and configuration to work with
inline constexpr int kExitBroken = 3;    // an exception that nobody expected

// Runs `work` on the machine that has started this program. Says on stderr what is missing.
int RunProgram(const char* name, const std::function<int(Client&)>& work);

}  // namespace ondura::engines
