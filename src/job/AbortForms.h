#pragma once

#include <string_view>

#include "job/JobContext.h"

namespace ondura {

// The ways in which a job leaves before its end: aborted by its user, or failed. Each form exists once; the
// places on the road differ in the text that they trace.
class AbortForms {
 public:
  explicit AbortForms(JobContext& job) : job_(job) {}

  // The user interface or the host asks for the end of the job.
  bool AbortAsked();

  // Traces the text of the place, writes the abort's log and status, ends engine and database manager
  // unless they are to be left running.
  enum class EngineEnd { kEnded, kLeftRunning };
  JobCode LeaveAborted(std::string_view trace_text, EngineEnd engine_end = EngineEnd::kEnded);

  // AbortAsked and LeaveAborted in one.
  Leave TestForAbort(std::string_view trace_text);

  // The forms of the transfer, while the engine runs: the status file says that it was cancelled by hand, the
  // shadow copy's folder goes and the session log is continued. A walk that is left within a folder has a log
  // of two lines only.
  enum class WalkPlace { kWithinFolder, kAfterItem };
  JobCode LeaveAfterInput(std::string_view trace_text);
  JobCode LeaveFromWalk(WalkPlace place);

  // A failure that the user reads in the session log: `text` becomes the job's result text.
  JobCode LeaveFailed(std::string_view text, JobEnd end);

  // A failure without port information: its two-line log, and no failure keys.
  JobCode LeaveWithoutPort();

  // The schedule is no longer valid: its file goes, and no log is written.
  JobCode LeaveWithoutSchedule(EngineResult result);

  // Writes the failure's log and keys without the status routine and without a code.
  void RecordFailure(std::string_view text);

  // The engine by its name and the database manager by its id, or both by their ids.
  void EndPrograms();
  void EndProgramsById();

  // Deletes the shadow copy's folder when it is there.
  void RemoveShadowTempFolder();

 private:
  void TraceAbort(std::string_view trace_text);
  void MarkAborted();
  enum class AbortLog { kNewBlock, kFurtherBlock, kFurtherLine };
  void WriteAbortLog(AbortLog log);
  JobCode LeaveTransfer(AbortLog log);
  void EndDatabaseManager();

  JobContext& job_;
};

}  // namespace ondura
