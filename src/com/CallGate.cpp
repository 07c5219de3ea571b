#include "com/CallGate.h"

#include <utility>

#include "com/Locked.h"

namespace ondura {

void CallGate::Enter() { Reenter(1); }

void CallGate::Leave() {
  const Locked locked(lock_);
  if (--depth_ > 0) return;
  owner_ = 0;
  ++serving_;
  WakeAllConditionVariable(&turn_);
}

int CallGate::LeaveWholly() {
  const Locked locked(lock_);
  owner_ = 0;
  ++serving_;
  WakeAllConditionVariable(&turn_);
  return std::exchange(depth_, 0);
}

void CallGate::Reenter(int depth) {
  const Locked locked(lock_);
  if (owner_ == GetCurrentThreadId()) {
    depth_ += depth;
    return;
  }
  const std::uint64_t ticket = next_ticket_++;
  while (serving_ != ticket) SleepConditionVariableSRW(&turn_, &lock_, INFINITE, 0);
  owner_ = GetCurrentThreadId();
  depth_ = depth;
}

}  // namespace ondura
