#pragma once

#include <string>
#include <vector>

#include "commands.h"

namespace ondura {

struct NextStep {
  std::string what;
  std::string command;
};

// What is still to be done before this machine's backups run, the first thing first; with all done, what
// shows how they go. Never throws.
std::vector<NextStep> NextSteps(const Globals& globals);

}  // namespace ondura
