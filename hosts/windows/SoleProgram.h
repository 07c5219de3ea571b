#pragma once

#include <memory>
#include <string_view>

#include "SoleHost.h"
#include "machines/win32/Win32Machine.h"

namespace ondura {

// This program's place as the one host of its kind on this machine, in all of its sessions.
class SoleProgram {
 public:
  // Throws HostError where the place is taken.
  SoleProgram(std::string_view product, std::string_view kind);

 private:
  std::unique_ptr<Win32Machine> machine_ = MakeWin32Machine();
  SoleHost place_;
};

}  // namespace ondura
