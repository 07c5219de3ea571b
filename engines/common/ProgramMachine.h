#pragma once

#include <memory>
#include <string>

#include "platform/machine.h"

namespace ondura::engines {

// The machine as one of its programs sees it.
class ProgramMachine {
 public:
  virtual ~ProgramMachine() = default;

  // Valid as long as this object.
  virtual const Machine& machine() = 0;
};

// What a running program of the client finds out about itself.
struct ChildMachine {
  std::unique_ptr<ProgramMachine> owner;  // null where this program can't run
  std::string folder;                     // of the executable, such as `C:\Program Files\Ondura\`
  std::string error;                      // why there is no machine
};

// The machine that this program was started on. The build picks the system's way of telling it.
ChildMachine MakeChildMachine();

}  // namespace ondura::engines
