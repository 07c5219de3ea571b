#include "job/AbortForms.h"

#include <string>

#include "engine/engine_files.h"
#include "job/job_texts.h"
#include "schedule/schedule_record.h"
#include "text/text.h"

namespace ondura {

namespace {

// The handle argument with which processes are ended by id: no window, so that the id counts.
constexpr WindowHandle kNoWindow = 1;

}  // namespace

bool AbortForms::AbortAsked() { return job_.keys.CheckAborted() || job_.services.progress.ProgressEnded(); }

Leave AbortForms::TestForAbort(std::string_view trace_text) {
  if (!AbortAsked()) return std::nullopt;
  return LeaveAborted(trace_text);
}

JobCode AbortForms::LeaveAborted(std::string_view trace_text, EngineEnd engine_end) {
  TraceAbort(trace_text);
  MarkAborted();
  WriteAbortLog(AbortLog::kNewBlock);
  job_.end_status.WriteJobEndStatus(JobEnd::kOrdinary);
  job_.temp_folder.DeleteTempFolder();
  job_.keys.ClearFailureDays();
  if (engine_end == EngineEnd::kEnded) EndPrograms();
  return kJobStopped;
}

JobCode AbortForms::LeaveAfterInput(std::string_view trace_text) {
  TraceAbort(trace_text);
  return LeaveTransfer(AbortLog::kFurtherBlock);
}

JobCode AbortForms::LeaveFromWalk(WalkPlace place) {
  Options& trace = job_.trace().plain();
  trace.WriteTrace("ScheduleCancelled 1");
  trace.WriteTrace("Aborted...");
  job_.keys.Write(profile_keys::kRetValue, job_.state.run.last_result.Text());
  const JobCode code =
      LeaveTransfer(place == WalkPlace::kWithinFolder ? AbortLog::kFurtherLine : AbortLog::kFurtherBlock);
  job_.temp_folder.DeleteTempFolder();
  job_.machine().files.Remove(job_.installation().UserFile(engine_files::kMappedDrives), Removal::kPlain);
  return code;
}

JobCode AbortForms::LeaveTransfer(AbortLog log) {
  MarkAborted();
  job_.keys.StampEnd();
  job_.keys.Write(profile_keys::kStatusMessage, "1");
  WriteAbortLog(log);
  job_.end_status.WriteStatusText(job_texts::kManualCancel);
  job_.end_status.WriteJobEndStatus(JobEnd::kOrdinary);
  RemoveShadowTempFolder();
  job_.keys.ClearFailureDays();
  EndPrograms();
  return kJobStopped;
}

void AbortForms::RecordFailure(std::string_view text) {
  JobRun& run = job_.state.run;
  run.result_text = text;
  const std::string session_path = job_.services.session_log.NewPath();
  job_.services.session_log.WriteBlock(session_path, text, SessionWrite::kAppend);
  job_.keys.WriteStatus(StatusWord::kFailed);
  job_.keys.MarkEndedByMessage();
  run.session_path = session_path;
}

JobCode AbortForms::LeaveFailed(std::string_view text, JobEnd end) {
  RecordFailure(text);
  job_.end_status.WriteJobEndStatus(end);
  return kJobFailed;
}

JobCode AbortForms::LeaveWithoutPort() {
  JobRun& run = job_.state.run;
  run.result_text = job_texts::kNoPortInformation;
  run.session_path = job_.services.session_log.NewPath();
  job_.services.session_log.WriteShortMessage(run.session_path, run.result_text, SessionWrite::kAppend);
  job_.end_status.WriteJobEndStatus(JobEnd::kOrdinary);
  return kJobFailed;
}

JobCode AbortForms::LeaveWithoutSchedule(EngineResult result) {
  job_.machine().files.Remove(job_.installation().UserFile(kScheduleFileName), Removal::kPlain);
  job_.end_status.WriteJobEndStatus(JobEnd::kOrdinary);
  return static_cast<JobCode>(result.number);
}

void AbortForms::EndPrograms() {
  job_.services.programs.IsProcessRunningByModule(job_.installation().ClientExe, Kill::kYes);
  EndDatabaseManager();
}

void AbortForms::EndProgramsById() {
  EndDatabaseManager();
  job_.services.programs.ProcessTerminate(job_.state.run.lClsClientPID, kNoWindow);
}

void AbortForms::EndDatabaseManager() {
  job_.services.programs.ProcessTerminate(job_.state.run.lDBManagerPID, kNoWindow);
}

void AbortForms::RemoveShadowTempFolder() {
  const std::string& folder = job_.state.run.shadow_temp_folder;
  if (!folder.empty()) job_.machine().folders.Remove(folder, Removal::kForce);
}

void AbortForms::TraceAbort(std::string_view trace_text) {
  if (trace_text.empty()) return;
  job_.trace().plain().WriteTrace(trace_text);
  job_.trace().plain().WriteTraceMain(trace_text);
}

void AbortForms::MarkAborted() {
  JobRun& run = job_.state.run;
  run.result_text = job_texts::kUserAbort;
  run.cancelled = true;
  job_.keys.WriteStatus(StatusWord::kFailed);
  job_.keys.Write(profile_keys::kDllStatus, run_state::kEndedByMessage);
}

void AbortForms::WriteAbortLog(AbortLog log) {
  JobRun& run = job_.state.run;
  SessionLog& session_log = job_.services.session_log;
  const std::string session_path = session_log.NewPath();
  job_.trace().User(" You have aborted the scheduled backup job" + session_path);
  if (log == AbortLog::kFurtherLine) {
    session_log.WriteTimedMessage(session_path, job_texts::kUserAbort, SessionWrite::kAppend);
  } else {
    session_log.WriteBlock(session_path, job_texts::kUserAbort,
                           log == AbortLog::kNewBlock ? SessionWrite::kReplace : SessionWrite::kAppend);
  }
  run.session_path = session_path;
}

}  // namespace ondura
