#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include "HostNotes.h"
#include "platform/machine.h"
#include "profile/Installation.h"
#include "profile/Transfer.h"
#include "reporting/Options.h"

namespace ondura {

// Nothing in a job limits how long its engine may run, and a job holds all users back. The host therefore
// counts the time of each engine: past the limit it asks for the end of the job as a person would, and a
// minute later it ends the engine itself. It says so in the main trace and in the host's notes.
class EngineGuard {
 public:
  // `machine` outlives the guard. A limit of zero means none.
  EngineGuard(const Machine& machine, const Installation& installation, std::chrono::milliseconds limit);
  EngineGuard(const EngineGuard&) = delete;
  EngineGuard& operator=(const EngineGuard&) = delete;

  // An engine has been started, or could not be (id 0): a job waits for such a one without an end.
  void Watch(ProcessId id);

  // A program has ended; its number may pass to another one.
  void Ended(ProcessId id);

  // No job runs any more.
  void Forget() { watched_.reset(); }

  // Time has passed for the watched engine.
  void Spent(std::chrono::milliseconds time);

 private:
  struct Watched {
    ProcessId id = 0;
    std::chrono::milliseconds spent{};
    std::chrono::milliseconds due{};
    bool asked = false;
  };

  bool IsRunning(ProcessId id);
  void AskForAbort();
  void EndEngine();
  void Say(std::string_view what);

  const Machine& machine_;
  Installation installation_;
  Transfer transfer_;
  Options trace_;
  HostNotes notes_;
  std::chrono::milliseconds limit_;
  std::optional<Watched> watched_;
};

}  // namespace ondura
