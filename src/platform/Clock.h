#pragma once

#include <chrono>

#include "platform/local_time.h"

namespace ondura {

// The machine's clock, and the only way to spend time.
//
// On Windows: GetLocalTime and Sleep.
class Clock {
 public:
  virtual ~Clock() = default;

  // Local time; never fails.
  virtual LocalTime Now() = 0;

  // Returns after `duration`, at once if it is 0 or less. A machine at rehearsal speed returns sooner.
  virtual void Sleep(std::chrono::milliseconds duration) = 0;
};

}  // namespace ondura
