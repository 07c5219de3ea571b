#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

#include "platform/Processes.h"

namespace ondura {

struct SpawnRequest {
  std::string file;                      // host path of the executable
  std::vector<std::string> arguments;    // after the program's name
  std::string folder;                    // host path; empty for the present one
  std::vector<std::string> environment;  // "NAME=value", in the place of what has the same name
  Lifetime lifetime = Lifetime::kOutlivesStarter;
};

// Starts a program in a session of its own, so that keys pressed at the host's terminal do not reach it, and
// without the host's streams: nobody reads what a hidden program prints. std::nullopt when it could not be
// started.
std::optional<pid_t> Spawn(const SpawnRequest& request);

// Runs a command by the shell to its end. True when it ended with 0.
bool RunShellCommand(const std::string& command);

}  // namespace ondura
