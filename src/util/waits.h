#pragma once

#include <chrono>
#include <functional>

#include "platform/machine.h"

namespace ondura {

// How long one pass of a wait loop listens to a process.
inline constexpr std::chrono::milliseconds kProcessPass{300};

// Owns the handle of a started program and closes it; the program goes on. A program that could not be
// started (kNoProcess) never ends: each wait for it is spent to the end.
class ProcessWatch {
 public:
  ProcessWatch(Processes& processes, ProcessHandle handle) : processes_(&processes), handle_(handle) {}
  ProcessWatch(ProcessWatch&& other) noexcept;
  ProcessWatch& operator=(ProcessWatch&& other) noexcept;
  ProcessWatch(const ProcessWatch&) = delete;
  ProcessWatch& operator=(const ProcessWatch&) = delete;
  ~ProcessWatch() { Close(); }

  [[nodiscard]] ProcessHandle handle() const { return handle_; }
  [[nodiscard]] bool WasStarted() const { return handle_ != kNoProcess; }

  // Waits for at most `limit`; true when the process has ended.
  [[nodiscard]] bool EndedWithin(std::chrono::milliseconds limit);

 private:
  void Close();

  Processes* processes_;
  ProcessHandle handle_;
};

enum class WaitOutcome { kEnded, kStopped };

using StopTest = std::function<bool()>;

// Until the process ends: listen for a pass, pump messages, sleep `pause` (0 for none).
void WaitUntilEnded(const Machine& machine, ProcessWatch& watch, std::chrono::milliseconds pause);

// The same, with a stop test after each pause that leaves the process running.
WaitOutcome WaitUntilEndedOrStopped(const Machine& machine, ProcessWatch& watch,
                                    std::chrono::milliseconds pause, const StopTest& stop);

// The same, where a program that could not be started counts as one that has ended.
WaitOutcome WaitUntilEndedOrStoppedIfStarted(const Machine& machine, ProcessWatch& watch,
                                             std::chrono::milliseconds pause, const StopTest& stop);

// Sleeps `pause` and pumps messages, again and again, until `done` holds after one of these.
void SleepAndPumpUntil(const Machine& machine, std::chrono::milliseconds pause,
                       const std::function<bool()>& done);

}  // namespace ondura
