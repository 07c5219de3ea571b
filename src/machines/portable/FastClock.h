#pragma once

#include <chrono>

#include "platform/forwarding.h"

namespace ondura {

// The component's own waits pass ten times faster, for rehearsals on a machine that has no speed of its own.
// What runs beside it lives in real time.
class FastClock : public ForwardingClock {
 public:
  using ForwardingClock::ForwardingClock;
  void Sleep(std::chrono::milliseconds duration) override { ForwardingClock::Sleep(duration / kSpeed); }

 private:
  static constexpr int kSpeed = 10;
};

}  // namespace ondura
