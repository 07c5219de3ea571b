#include "service/StartedFlag.h"

#include <chrono>
#include <string>

#include "reporting/Options.h"

namespace ondura {

namespace {

// A job traces at least this often between two runs of the engine.
constexpr std::chrono::seconds kSignOfLife{120};

}  // namespace

bool StartedFlag::IsRaised() {
  return job_.services.transfer.Trf_ReadUserNameProfile(profile_keys::kStarted) == "1";
}

void StartedFlag::LowerOwn() {
  if (is_own_ || !IsRaised()) Lower();
}

bool StartedFlag::JobIsAlive() { return EngineRuns() || OtherHostIsBetweenEngineRuns(); }

// The other host may run under an account whose processes this one can't open.
bool StartedFlag::EngineRuns() {
  return job_.services.programs.IsProcessInSnapshot(job_.installation().ClientExe);
}

void StartedFlag::Write(std::string_view value) {
  job_.services.transfer.Trf_WriteUserNameProfile(profile_keys::kStarted, value);
  is_own_ = value == "1";
}

// A job of the other host has moments without an engine, in its waits and between two commands. The
// fresh trace of its user distinguishes it from a job that was cut off.
bool StartedFlag::OtherHostIsBetweenEngineRuns() {
  if (is_own_) return false;
  const std::string user = job_.services.transfer.Trf_ReadUserNameProfile(profile_keys::kScheduled);
  if (user.empty()) return false;
  const std::string trace_file = job_.installation().FolderOf(user) + "\\" + std::string{kScheduleTraceFile};
  const auto written = job_.machine().files.Modified(trace_file);
  const LocalTime now = job_.machine().clock.Now();
  // A file's time may be coarser than the clock, or of before the clock was set back a little.
  return written && *written - now <= kSignOfLife && now - *written <= kSignOfLife;
}

}  // namespace ondura
