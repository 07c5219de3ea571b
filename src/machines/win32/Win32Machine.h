#pragma once

#include <memory>

#include "platform/machine.h"

namespace ondura {

// The Windows that the process runs on. Handles that a caller leaves open close with it.
class Win32Machine {
 public:
  virtual ~Win32Machine() = default;

  // Valid as long as this object.
  virtual const Machine& machine() = 0;
};

// Asks nothing of the system by itself, so it neither fails nor costs anything.
std::unique_ptr<Win32Machine> MakeWin32Machine();

}  // namespace ondura
