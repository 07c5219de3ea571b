#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/Processes.h"

namespace ondura {

class SimulatedMachine;
class SimulatedProcesses;

// One run of a scripted program, from its start on. Lives as long as the machine, so actions may keep a
// reference to it.
//
// A run that is told neither to exit nor to go on for ever ends with code 0 when its last action is done.
class ProgramRun {
 public:
  using Action = std::function<void()>;

  ProgramRun(SimulatedProcesses& processes, SimulatedMachine& machine, ProcessId id, LaunchRequest request);

  ProcessId id() const { return id_; }
  const std::string& path() const { return request_.file; }
  const std::string& parameters() const { return request_.parameters; }  // byte for byte
  const std::string& folder() const { return request_.folder; }
  SimulatedMachine& machine() { return machine_; }

  // Acts once, that much virtual time from now, unless the run has ended by then.
  void After(std::chrono::milliseconds delay, Action action);

  // Acts every `period` for as long as the run lasts. Does not keep the run from ending by itself.
  void Every(std::chrono::milliseconds period, Action action);

  // Ends the run at that moment; actions that are still to come are dropped.
  void ExitAfter(std::chrono::milliseconds delay, std::uint32_t code);
  void Exit(std::uint32_t code);

  // The module-based list does not show the run before that much virtual time has passed: no module is
  // loaded.
  void AppearsAfter(std::chrono::milliseconds delay);

  void NeverEnds() { goes_on_ = true; }

  // Runs when another process ends this one.
  void OnTerminated(Action action) { on_terminated_ = std::move(action); }

 private:
  friend class SimulatedProcesses;

  void EndIfDone();

  SimulatedProcesses& processes_;
  SimulatedMachine& machine_;
  ProcessId id_;
  LaunchRequest request_;
  Action on_terminated_;
  int actions_to_come_ = 0;
  bool goes_on_ = false;
  bool started_ = false;
  bool has_ended_ = false;
};

using Program = std::function<void(ProgramRun&)>;

// What a scripted program with pipes prints and ends with. It prints all of it at once; one that `hangs` ends
// when it is interrupted or killed.
struct PipedAnswer {
  std::vector<PipedLine> lines;
  std::uint32_t exit_code = 0;
  bool hangs = false;
};
using PipedScript = std::function<PipedAnswer(const PipedRequest& request)>;

}  // namespace ondura
