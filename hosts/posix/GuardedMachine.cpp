#include "GuardedMachine.h"

#include "TickGuard.h"
#include "text/text.h"

namespace ondura {

LocalTime GuardedClock::Now() {
  const LocalTime shown = ForwardingClock::Now();
  const auto at = std::chrono::steady_clock::now();
  if (believed_) {
    const auto expected =
        believed_->shown + std::chrono::duration_cast<std::chrono::seconds>(at - believed_->at);
    if (shown - expected > kBelievedAhead) return expected;
  }
  believed_ = Moment{shown, at};
  return shown;
}

void GuardedClock::Sleep(std::chrono::milliseconds duration) {
  ForwardingClock::Sleep(duration);
  if (guard_ != nullptr) guard_->Spent(duration);
}

ProcessHandle GuardedProcesses::Launch(const LaunchRequest& request) {
  const ProcessHandle handle = ForwardingProcesses::Launch(request);
  if (guard_ != nullptr && EqualsIgnoringCase(FileNameOf(request.file), engine_)) {
    guard_->Watch(handle == kNoProcess ? 0 : ForwardingProcesses::IdOf(handle));
  }
  return handle;
}

ProcessWait GuardedProcesses::Wait(ProcessHandle handle, std::chrono::milliseconds limit) {
  const ProcessWait result = ForwardingProcesses::Wait(handle, limit);
  if (guard_ == nullptr) return result;
  if (result == ProcessWait::kTimedOut) {
    guard_->Spent(limit);
  } else {
    guard_->Ended(ForwardingProcesses::IdOf(handle));
  }
  return result;
}

GuardedMachine::GuardedMachine(const Machine& machine)
    : clock_(machine.clock, guard_),
      processes_(machine.processes, guard_),
      machine_(With(With(machine, clock_), processes_)) {}

void GuardedMachine::Attach(EngineGuard& guard, std::string engine) {
  guard_ = &guard;
  processes_.SetEngine(std::move(engine));
}

}  // namespace ondura
