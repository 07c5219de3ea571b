#include "util/StartedProgram.h"

namespace ondura {

bool StartedProgram::IsRunning() {
  if (programs_.IsProcessRunningByModule(name_, Kill::kNo)) {
    is_to_appear_ = false;
    return true;
  }
  return is_to_appear_ && process_.WasStarted() && !process_.EndedWithin(std::chrono::milliseconds{0});
}

}  // namespace ondura
