#pragma once

#include <chrono>
#include <optional>

#include "EngineGuard.h"
#include "platform/forwarding.h"

namespace ondura {

// Clock of a component whose jobs last for hours: a time that can't be believed is not handed on, and the
// waits are counted for the engine that they may be meant for.
class GuardedClock : public ForwardingClock {
 public:
  GuardedClock(Clock& next, EngineGuard*& guard) : ForwardingClock(next), guard_(guard) {}

  LocalTime Now() override;
  void Sleep(std::chrono::milliseconds duration) override;

  // What the clock shows next is taken as it is.
  void Believe() { believed_.reset(); }

 private:
  struct Moment {
    LocalTime shown;
    std::chrono::steady_clock::time_point at;
  };

  EngineGuard*& guard_;
  std::optional<Moment> believed_;
};

// Tells the guard which engine is started and how long it is waited for.
class GuardedProcesses : public ForwardingProcesses {
 public:
  GuardedProcesses(Processes& next, EngineGuard*& guard) : ForwardingProcesses(next), guard_(guard) {}

  ProcessHandle Launch(const LaunchRequest& request) override;
  ProcessWait Wait(ProcessHandle handle, std::chrono::milliseconds limit) override;

  // File name of the engine, as the product has it.
  void SetEngine(std::string name) { engine_ = std::move(name); }

 private:
  EngineGuard*& guard_;
  std::string engine_;
};

// The machine as a component is given it by a host that looks after it.
class GuardedMachine {
 public:
  // `machine` outlives this object.
  explicit GuardedMachine(const Machine& machine);
  GuardedMachine(const GuardedMachine&) = delete;
  GuardedMachine& operator=(const GuardedMachine&) = delete;

  [[nodiscard]] const Machine& machine() const { return machine_; }

  // From here on, until it is detached, `guard` is told about the engines.
  void Attach(EngineGuard& guard, std::string engine);
  void Detach() { guard_ = nullptr; }

  void BelieveClock() { clock_.Believe(); }

 private:
  EngineGuard* guard_ = nullptr;
  GuardedClock clock_;
  GuardedProcesses processes_;
  Machine machine_;
};

}  // namespace ondura
