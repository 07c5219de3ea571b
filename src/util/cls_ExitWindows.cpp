#include "util/cls_ExitWindows.h"

namespace ondura {

void cls_ExitWindows::ExitWindows(std::uint32_t nFlag) {
  processes_.EnablePrivilege("SeShutdownPrivilege");
  power_.ExitWindows(nFlag | kExitForce);
}

}  // namespace ondura
