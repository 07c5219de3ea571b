#pragma once

#include <string>

namespace ondura {

// What a running program finds out about the machine in a folder that has started it. Empty texts where
// none has.
struct StartedProgram {
  std::string root;        // the machine's folder on the host
  int speed = 1;           // every wait is divided by it
  std::string parameters;  // as they were before they were split into arguments
};

// From the environment: ONDURA_ROOT, ONDURA_SPEED and ONDURA_PARAMETERS.
StartedProgram ReadStartedProgram();

// Folder of the running program as the machine in `root` sees it, such as "C:\Program Files\Ondura\". Empty
// for a program outside of that folder.
std::string OwnFolderIn(const std::string& root);

}  // namespace ondura
