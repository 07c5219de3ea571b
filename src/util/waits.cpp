#include "util/waits.h"

#include <utility>

namespace ondura {

ProcessWatch::ProcessWatch(ProcessWatch&& other) noexcept
    : processes_(other.processes_), handle_(std::exchange(other.handle_, kNoProcess)) {}

ProcessWatch& ProcessWatch::operator=(ProcessWatch&& other) noexcept {
  std::swap(processes_, other.processes_);
  std::swap(handle_, other.handle_);
  return *this;
}

bool ProcessWatch::EndedWithin(std::chrono::milliseconds limit) {
  return processes_->Wait(handle_, limit) == ProcessWait::kEnded;
}

void ProcessWatch::Close() {
  if (WasStarted()) processes_->Close(handle_);
}

void WaitUntilEnded(const Machine& machine, ProcessWatch& watch, std::chrono::milliseconds pause) {
  WaitUntilEndedOrStopped(machine, watch, pause, [] { return false; });
}

WaitOutcome WaitUntilEndedOrStopped(const Machine& machine, ProcessWatch& watch,
                                    std::chrono::milliseconds pause, const StopTest& stop) {
  while (!watch.EndedWithin(kProcessPass)) {
    machine.pump.Pump();
    if (pause.count() > 0) machine.clock.Sleep(pause);
    if (stop()) return WaitOutcome::kStopped;
  }
  return WaitOutcome::kEnded;
}

WaitOutcome WaitUntilEndedOrStoppedIfStarted(const Machine& machine, ProcessWatch& watch,
                                             std::chrono::milliseconds pause, const StopTest& stop) {
  if (!watch.WasStarted()) return WaitOutcome::kEnded;
  return WaitUntilEndedOrStopped(machine, watch, pause, stop);
}

void SleepAndPumpUntil(const Machine& machine, std::chrono::milliseconds pause,
                       const std::function<bool()>& done) {
  do {
    machine.clock.Sleep(pause);
    machine.pump.Pump();
  } while (!done());
}

}  // namespace ondura
