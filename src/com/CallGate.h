#pragma once

#include <cstdint>

#include "com/automation.h"

namespace ondura {

// One call at a time into the shared component, whichever thread it comes from, in the order in which they
// came. A thread that is inside may call again.
//
// A job runs inside one call for hours; while it pumps messages the others get their turn.
class CallGate {
 public:
  CallGate() = default;
  CallGate(const CallGate&) = delete;
  CallGate& operator=(const CallGate&) = delete;

  // Inside for as long as this object lives.
  class Hold {
   public:
    explicit Hold(CallGate& gate) : gate_(gate) { gate_.Enter(); }
    ~Hold() { gate_.Leave(); }
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;

   private:
    CallGate& gate_;
  };

  // Outside for as long as this object lives; made by the thread that is inside.
  class Pause {
   public:
    explicit Pause(CallGate& gate) : gate_(gate), depth_(gate.LeaveWholly()) {}
    ~Pause() { gate_.Reenter(depth_); }
    Pause(const Pause&) = delete;
    Pause& operator=(const Pause&) = delete;

   private:
    CallGate& gate_;
    int depth_;
  };

 private:
  void Enter();
  void Leave();
  int LeaveWholly();
  void Reenter(int depth);

  SRWLOCK lock_ = SRWLOCK_INIT;
  CONDITION_VARIABLE turn_ = CONDITION_VARIABLE_INIT;
  std::uint64_t next_ticket_ = 0;
  std::uint64_t serving_ = 0;
  DWORD owner_ = 0;  // no thread has the id 0
  int depth_ = 0;
};

}  // namespace ondura
