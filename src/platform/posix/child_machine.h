#pragma once

#include <string>

#include "platform/posix/posix_machine.h"

namespace ondura {

// What a program that was started by a machine in a folder sees of it.
struct ChildMachine {
  std::unique_ptr<PosixMachine> owner;  // null when this program was not started by such a machine
  std::string folder;                   // of the running executable, such as `C:\Program Files\Ondura\`
  std::string error;                    // why there is none
};

// The machine named by ONDURA_ROOT and ONDURA_SPEED of the environment.
ChildMachine MakeChildMachine();

}  // namespace ondura
