#pragma once

#include <string_view>

#include "job/JobContext.h"

namespace ondura {

// Key `Started` of the shared state: "1" says that a job is running, in this component or in the other
// host's. Nothing locks it. What tells the two apart is that a component remembers whether the "1" is its
// own.
class StartedFlag {
 public:
  explicit StartedFlag(JobContext& job) : job_(job) {}

  void Raise() { Write("1"); }
  void Lower() { Write("0"); }

  // Lowers it unless the other host has raised it meanwhile.
  void LowerOwn();

  bool IsRaised();

  // The other host has begun a job.
  bool IsRaisedByOther() { return !is_own_ && IsRaised(); }

  // The "1" that is there is a left-over, and this component answers for it from now on.
  void TakeOver() { is_own_ = true; }

  // While the flag is raised: false if the job that raised it was cut off.
  bool JobIsAlive();

  // An engine is there, whoever has started it.
  bool EngineRuns();

 private:
  void Write(std::string_view value);
  bool OtherHostIsBetweenEngineRuns();

  JobContext& job_;
  bool is_own_ = false;
};

}  // namespace ondura
