#include "machines/simulated/simulated_time.h"

namespace ondura {
namespace {

constexpr int kPumpsInAMillisecond = 1000;

bool Never() { return false; }

// Sets a flag for as long as it lives, also when an actor throws.
class Entered {
 public:
  explicit Entered(bool& flag) : flag_(flag) { flag_ = true; }
  ~Entered() { flag_ = false; }
  Entered(const Entered&) = delete;
  Entered& operator=(const Entered&) = delete;

 private:
  bool& flag_;
};

}  // namespace

void SimulatedClock::Sleep(std::chrono::milliseconds duration) { timeline_.Wait(duration, Never); }

void SimulatedMessagePump::Pump() {
  if (timeline_.Elapsed() != last_pump_) pumps_at_once_ = 0;
  const bool is_busy = ++pumps_at_once_ > kPumpsInAMillisecond;
  timeline_.Wait(Timeline::Milliseconds{is_busy ? 1 : 0}, Never);
  last_pump_ = timeline_.Elapsed();
  if (is_in_hooks_) return;
  const Entered entered(is_in_hooks_);
  for (std::size_t number = 0; number < hooks_.size(); ++number) {
    const Timeline::Action hook = hooks_[number];  // a hook may add another
    hook();
  }
}

}  // namespace ondura
