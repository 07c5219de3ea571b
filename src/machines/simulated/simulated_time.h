#pragma once

#include <vector>

#include "machines/simulated/Timeline.h"
#include "machines/simulated/surroundings.h"
#include "platform/Clock.h"
#include "platform/MessagePump.h"

namespace ondura {

class SimulatedClock : public Clock {
 public:
  SimulatedClock(Timeline& timeline, const Surroundings& surroundings)
      : timeline_(timeline), surroundings_(surroundings) {}
  LocalTime Now() override { return timeline_.Now(); }
  std::chrono::minutes UtcOffset(LocalTime local) override {
    return surroundings_.utc_offset ? surroundings_.utc_offset(local) : std::chrono::minutes{0};
  }
  void Sleep(std::chrono::milliseconds duration) override;

 private:
  Timeline& timeline_;
  const Surroundings& surroundings_;
};

// Lets other actors move. A loop that only pumps spends a little time now and then, as it does in life.
class SimulatedMessagePump : public MessagePump {
 public:
  explicit SimulatedMessagePump(Timeline& timeline) : timeline_(timeline) {}
  void Pump() override;

  void AddHook(Timeline::Action hook) { hooks_.push_back(std::move(hook)); }

 private:
  Timeline& timeline_;
  std::vector<Timeline::Action> hooks_;
  bool is_in_hooks_ = false;
  int pumps_at_once_ = 0;
  Timeline::Milliseconds last_pump_{0};
};

}  // namespace ondura
