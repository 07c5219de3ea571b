#pragma once

#include <chrono>

#include "platform/local_time.h"

namespace ondura {

// The machine's clock, and the only way to spend time.
//
// On Windows: GetLocalTime, TzSpecificLocalTimeToSystemTime and Sleep.
class Clock {
 public:
  virtual ~Clock() = default;

  // Local time; never fails.
  virtual LocalTime Now() = 0;

  // How far the machine's zone is ahead of UTC at `local`. In the hour that the end of summer time brings
  // twice it is one of the two; 0 where the system can't say.
  virtual std::chrono::minutes UtcOffset(LocalTime local) = 0;

  // Returns after `duration`, at once if it is 0 or less. A machine at rehearsal speed returns sooner.
  virtual void Sleep(std::chrono::milliseconds duration) = 0;
};

}  // namespace ondura
