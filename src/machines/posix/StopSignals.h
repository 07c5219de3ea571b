#pragma once

#include <signal.h>

#include <chrono>

namespace ondura {

// The host's wish to leave: SIGTERM and SIGINT while this object lives. The first is counted and lets the
// running work end; a second one ends the process at once.
class StopSignals {
 public:
  StopSignals();
  ~StopSignals();
  StopSignals(const StopSignals&) = delete;
  StopSignals& operator=(const StopSignals&) = delete;

  [[nodiscard]] bool Requested() const;

  // Returns after `duration` of real time, or as soon as a stop is requested.
  void WaitFor(std::chrono::nanoseconds duration) const;

 private:
  struct sigaction old_terminate_ {};
  struct sigaction old_interrupt_ {};
};

// Keeps the signals waiting until the next StopSignals is made, also over the start of another program in
// this process.
void HoldStopSignals();

}  // namespace ondura
