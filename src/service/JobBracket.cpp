#include "service/JobBracket.h"

#include "service/tray.h"

#include <chrono>
#include <initializer_list>

#include "engine/engine_files.h"
#include "engine/engine_results.h"
#include "profile/profile_paths.h"
#include "reporting/Options.h"
#include "schedule/schedule_header.h"
#include "text/text.h"
#include "util/cls_ExitWindows.h"

namespace ondura {

namespace {

using std::chrono::milliseconds;

constexpr std::uint64_t kJobTraceCapBytes = 100000;
constexpr std::int16_t kIntBackupPassesGranted = 15;
constexpr WindowHandle kNoWindow = 1;
constexpr milliseconds kBeforePause{5000};
constexpr milliseconds kAfterPause{1000};
constexpr milliseconds kBeforeJob{2000};
constexpr milliseconds kPauseSettles{20000};

}  // namespace

JobBracket::End JobBracket::Run() {
  ServiceState& state = context_.state;
  PrepareRecord();
  if (IsDisabled()) return End::kDone;
  context_.services().scheduler.sch_changefiledata(context_.schedule_file().schvTemp.recordno);
  const bool is_twin = context_.transfer().Trf_ReadUserNameProfile(profile_keys::kStandard) != "0";
  if (is_twin && !TrayRuns(context_)) OpenTray(context_);
  context_.transfer().Trf_WriteUserNameProfile(profile_keys::kScheduled, context_.installation().CurrentUser);
  if (HeldBack()) return End::kDone;
  context_.machine().clock.Sleep(kBeforeJob);
  context_.trace().User("  Set the scheduler text as 1");
  const bool owns_continuous_backup = PauseContinuousBackup();
  state.BackupStartTime = context_.services().scheduler.TimeOf(context_.schedule_file().schvTemp);
  TraceTargetFiles();
  if (!FileIsStillOurs()) {
    if (owns_continuous_backup) ResumeContinuousBackup();
    return End::kDone;
  }
  JobCode result = RunJob();
  ReleaseHelpers();
  if (engine_results::EndsSchedule({static_cast<double>(result)})) return End::kScheduleGone;
  if (result == 0) result = kJobOrdinaryEnd;
  TraceStatus();
  state.WaitingForInteractive = false;
  if (owns_continuous_backup) ResumeContinuousBackup();
  CloseUp();
  mail_.StartForRecord(result);
  FinishPass();
  return End::kDone;
}

void JobBracket::PrepareRecord() {
  DBaction& schedule = context_.schedule_file();
  Files& files = context_.machine().files;
  context_.state.ScheduleFileBusy = true;
  if (schedule.Selected()) schedule.schvTemp = *schedule.Selected();
  if (!schedule.schvTemp.nexttime.empty()) {
    context_.mail_values.ScheduledTimeText = schedule.schvTemp.nexttime;
  }
  context_.services().scheduler.SetDayFlags(schedule.schvTemp.daymask);
  const std::string trace_file = context_.installation().UserFile(kScheduleTraceFile);
  if (files.Size(trace_file).value_or(0) > kJobTraceCapBytes) files.Remove(trace_file, Removal::kPlain);
  context_.machine().folders.Make(context_.installation().UserFile("logs"));
  context_.trace().User("  Scheduler Recordno : " + schedule.schvTemp.recordno);
  context_.job.state.run.extra_mail_text.clear();
}

// The scan leaves disabled users out; this look catches one who was switched off since.
bool JobBracket::IsDisabled() {
  std::string disabled = context_.transfer().Trf_ReadUserProfile(profile_keys::kScheduleDisable);
  if (disabled.empty()) disabled = "FALSE";
  context_.trace().User("  Scheduled Disabled: " + disabled);
  if (disabled != "TRUE") return false;
  missed_.EndDisabledJob(closeup_);
  return true;
}

// An interactive or continuous backup of the same user holds the job back to a later pass.
bool JobBracket::HeldBack() {
  ServiceState& state = context_.state;
  const std::string interactive = context_.transfer().Trf_ReadUserNameProfile(profile_keys::kInteractive);
  if (Trim(interactive) != context_.installation().CurrentUser) return false;
  const bool engine_runs =
      context_.services().programs.FindEngineProcessId(context_.installation().ClientExe).has_value();
  if (context_.transfer().Trf_ReadUserNameProfile(profile_keys::kRtBackup) == "1") {
    HoldForContinuousBackup();
  } else if (StatusWordOf(context_.store().ReadUserProfileValue(Trim(interactive), profile_keys::kStatus)) ==
             StatusWord::kInteractive) {
    HoldForInteractiveBackup(engine_runs);
  } else {
    context_.job.keys.WriteStatus(StatusWord::kIdle);
  }
  return !state.RunJob;
}

void JobBracket::HoldForContinuousBackup() {
  context_.state.WaitingForInteractive = true;
  context_.trace().plain().WriteTrace("Pause the CDP backup till scheduled backup completes.");
  context_.job.keys.WriteStatus(StatusWord::kStopAsked);
  context_.machine().clock.Sleep(kBeforePause);
  context_.machine().continuous_backup.PostCDPStatusMsg(ContinuousBackupState::kPause);
  context_.machine().clock.Sleep(kAfterPause);
  context_.transfer().Trf_WriteUserNameProfile(profile_keys::kRtBackup, "0");
  LetGoOfFile();
}

// A flag that is set for 16 passes without an engine is stale, and the next pass runs the job.
void JobBracket::HoldForInteractiveBackup(bool engine_runs) {
  ServiceState& state = context_.state;
  state.WaitingForInteractive = true;
  context_.trace().User(" Wait till the interactive backup is complete");
  LetGoOfFile();
  if (context_.transfer().Trf_ReadUserNameProfile(profile_keys::kIntBackup) != "1" || engine_runs) {
    state.IntBackupPasses = 0;
    return;
  }
  context_.trace().User(" Backup engine not running and IntBackup flag set");
  if (++state.IntBackupPasses <= kIntBackupPassesGranted) return;
  context_.trace().User(" IntBackup flag reset");
  context_.job.keys.WriteStatus(StatusWord::kIdle);
  state.IntBackupPasses = 0;
}

void JobBracket::LetGoOfFile() {
  context_.services().scheduler.sch_changefiledata("0");
  context_.state.ScheduleFileBusy = false;
  context_.state.RunJob = false;
}

bool JobBracket::PauseContinuousBackup() {
  const Transfer& transfer = context_.transfer();
  const std::string real_time = transfer.Trf_ReadUserNameProfile(profile_keys::kRealTimeBackup);
  const std::string owner = transfer.Trf_ReadUserNameProfileReg(profile_keys::kTrayUser);
  const bool is_ours = real_time == "1" && owner == context_.installation().CurrentUser;
  if (is_ours) {
    AddToPauses(1);
    if (transfer.Trf_ReadUserNameProfile(profile_keys::kRtBackup) == "1") {
      context_.trace().plain().WriteTrace("[2]Pause the CDP backup till scheduled backup completes.");
      context_.job.keys.WriteStatus(StatusWord::kStopAsked);
      context_.machine().continuous_backup.PostCDPStatusMsg(ContinuousBackupState::kPause);
    }
    transfer.Trf_WriteUserNameProfile(profile_keys::kRtBackup, "0");
    context_.machine().clock.Sleep(kPauseSettles);
  }
  context_.trace().User("  RealTimeBackup = " + real_time + "  ;CurrentUser = " + owner);
  return is_ours;
}

void JobBracket::ResumeContinuousBackup() {
  if (AddToPauses(-1) != 0) return;
  if (context_.transfer().Trf_ReadUserNameProfile(profile_keys::kRealTimeBackup) != "1") return;
  context_.machine().continuous_backup.PostCDPStatusMsg(ContinuousBackupState::kResume);
  context_.machine().clock.Sleep(kAfterPause);
}

int JobBracket::AddToPauses(int change) {
  const auto pauses =
      ParseInt16(context_.transfer().Trf_ReadUserNameProfile(profile_keys::kRtbPausedBySch)).value_or(0);
  context_.transfer().Trf_WriteUserNameProfile(profile_keys::kRtbPausedBySch,
                                               std::to_string(pauses + change));
  return pauses + change;
}

// The waits up to here are long enough for a pass of the other host. It takes a header without `Started` for
// a left-over and resets it, or has read the file before the header was written and begins the same job. The
// occurrence is then whoever's next pass finds it.
bool JobBracket::FileIsStillOurs() {
  const DBaction& schedule = context_.schedule_file();
  const auto word = ReadHeaderWord(context_.machine().files, schedule.ScheduleFilePath);
  const bool is_free = !context_.started.IsRaisedByOther();
  if (is_free && word && *word == HeaderWordOf(schedule.schvTemp.recordno)) return true;
  context_.trace().User("  The other host was here before the job began; the next pass decides.");
  context_.state.ScheduleFileBusy = false;
  context_.state.RunJob = false;
  return false;
}

void JobBracket::TraceTargetFiles() {
  std::vector<std::string>& targets = context_.state.TargetFileMap;
  Options& trace = context_.trace().plain();
  trace.WriteTrace("TargetFileMap count:" + std::to_string(targets.size()));
  for (; !targets.empty(); targets.pop_back()) trace.WriteTrace(targets.back());
}

JobCode JobBracket::RunJob() {
  context_.started.Raise();
  context_.services().progress.ClearProgressEnded();
  context_.job.keys.Write(profile_keys::kPaused, "0");
  context_.trace().plain().WriteTrace("Before entering Sch_Bkup, the EXE LOCATION IS " +
                                      context_.installation().ExeLocation);
  return context_.driver.Cont_SchBackup();
}

void JobBracket::ReleaseHelpers() {
  context_.job.keys.Write(profile_keys::kPaused, "0");
  context_.shadow_copy.CloseVSS();
  context_.shadow_copy.ResetLaunchStatus();
  context_.trace().plain().WriteTrace("[VSS] OpenFileLaunchStatus reset to 0");
  context_.shadow_copy.CheckAndCloseVSS();
  JobRun& run = context_.job.state.run;
  context_.services().programs.ProcessTerminate(run.lClsClientPID, kNoWindow);
  run.engine.reset();
  run.database_manager.reset();
}

void JobBracket::CloseUp() {
  context_.trace().User("  Set back schedule text as 0");
  for (const std::string_view name :
       {engine_files::kOutput, engine_files::kInput, engine_files::kOutputInfo}) {
    context_.machine().files.Remove(context_.installation().UserFile(name), Removal::kPlain);
  }
  TraceStatus();
  context_.services().scheduler.sch_changefiledata("0");
  closeup_.Closeupoperation();
  TraceStatus();
}

void JobBracket::FinishPass() {
  TraceStatus();
  context_.trace().plain().WriteTrace("Calling VaccumDB");
  context_.services().local_database.VaccumDB();
  context_.machine().pump.Pump();
  context_.trace().User("  Scheduler job completed");
  context_.machine().files.Remove(context_.installation().UserFile(kScheduleInfoFile), Removal::kPlain);
  context_.state.ScheduleFileBusy = false;
  if (context_.transfer().Trf_ReadUserProfile(profile_keys::kShutdown) != "1") return;
  const EngineResult result{context_.store().ReadLastRetValue()};
  const std::string dll_status = context_.job.keys.Read(profile_keys::kDllStatus);
  // A cancelled job means that somebody is at the machine.
  if (Trim(dll_status) == run_state::kEndedByMessage && result == engine_results::kCancelled) return;
  context_.trace().User("  Shuting down windows");
  cls_ExitWindows(context_.machine().processes, context_.machine().power).ExitWindows(kExitPowerOff);
}

void JobBracket::TraceStatus() {
  context_.trace().User("  Status : " + context_.job.keys.Read(profile_keys::kStatus));
}

void JobBracket::cont_RestartRealtimeSystem() {
  Options& trace = context_.trace().plain();
  trace.WriteTraceMain("Entered into cont_RestartRealtimeSystem");
  if (context_.transfer().Trf_ReadUserNameProfile(profile_keys::kRealTimeBackup) == "1") {
    trace.WriteTraceMain("Continuous Backup system restarted");
    context_.machine().continuous_backup.PostCDPStatusMsg(ContinuousBackupState::kResume);
  }
  context_.transfer().Trf_WriteUserNameProfile(profile_keys::kRtbPausedBySch, "0");
}

}  // namespace ondura
