#pragma once

#include <sys/types.h>

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "machines/posix/host_io.h"
#include "platform/Processes.h"

namespace ondura {

struct SpawnRequest {
  std::string file;                      // host path of the executable
  std::vector<std::string> arguments;    // after the program's name
  std::string folder;                    // host path; empty for the present one
  std::vector<std::string> environment;  // "NAME=value", in the place of what has the same name
  Lifetime lifetime = Lifetime::kOutlivesStarter;
  bool whole_environment = false;          // `environment` is all that the program gets
  std::array<int, 3> streams{-1, -1, -1};  // input, output and errors; -1 is nothing to read or to print on
  std::vector<int> passed;                 // open files that the program gets under the same numbers
};

// Both ends of a pipe that started programs do not get. Not valid if the host has none left.
struct Pipe {
  Pipe();
  Fd out;
  Fd in;
};

// Starts a program in a session of its own, so that keys pressed at the host's terminal do not reach it, and
// without the host's streams: nobody reads what a hidden program prints. std::nullopt when it could not be
// started.
std::optional<pid_t> Spawn(const SpawnRequest& request);

// Runs a command by the shell to its end. True when it ended with 0.
bool RunShellCommand(const std::string& command);

}  // namespace ondura
