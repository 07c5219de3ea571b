#include "job/JobDriver.h"

#include <chrono>

#include "engine/engine_files.h"
#include "engine/engine_results.h"
#include "job/Quota.h"
#include "job/job_texts.h"
#include "profile/profile_paths.h"
#include "text/text.h"
#include "util/TextFiles.h"

namespace ondura {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kBeforeConnection{2000};
constexpr double kLeastFreeBytes = 1073741824;
constexpr std::uint64_t kEngineTraceCapBytes = 5242880;
constexpr int kMostNestedRuns = 16;
constexpr std::string_view kNoEncryptionPassword = "NOENC";

}  // namespace

JobDriver::JobDriver(JobContext& job)
    : job_(job), abort_(job), connection_(job, abort_), transfer_(job, abort_) {}

JobCode JobDriver::Cont_SchBackup() {
  std::string& schedule_file_path = job_.services.schedule_file.ScheduleFilePath;
  const std::string path = schedule_file_path;
  was_refused_a_run_ = false;
  const JobCode code = RunOnce();
  schedule_file_path = path;
  return code;
}

JobCode JobDriver::RunOnce() {
  Reset();
  ReadProfile();
  if (auto leave = RefuseWithoutEncryptionPassword()) return *leave;
  if (auto leave = RunStage()) return *leave;
  BeginConnection();
  ResetProgressFiles();
  if (auto leave = EndAtSupportMarker()) return *leave;
  if (auto leave = connection_.DiscoverPort()) return *leave;
  TakeStageItems();
  CheckServiceRunning();
  FallBackWhenSpaceIsShort();
  if (auto leave = connection_.StopOverQuota()) return *leave;
  if (auto leave = abort_.TestForAbort(job_texts::kAbortedBefore28)) return *leave;
  if (auto leave = PrepareBackupSet()) return *leave;
  return Transfer();
}

void JobDriver::Reset() {
  const JobServices& services = job_.services;
  std::string mail_text = std::move(job_.state.run.extra_mail_text);
  job_.state.run = JobRun{};
  job_.state.run.extra_mail_text = std::move(mail_text);
  job_.state.run.new_password_text =
      "Logout from the account (" + services.installation.CurrentUser +
      ") and then login with your new Password and attempt the operation again.";
  job_.end_status.ResetStatusFiles();
  job_.keys.Write(profile_keys::kPaused, "0");
  // A request that an earlier job has obeyed is not this one's; one that came since the job began is.
  if (nested_runs_ == 0) {
    job_.keys.Write(profile_keys::kCancel, "0");
    job_.keys.Write(profile_keys::kProgStatus, "0");
  }
  services.transfer.Trf_WriteUserProfileDefault(profile_keys::kLsn, "");
  services.trace.plain().WriteTrace(QuotaTrace(ReadQuotaOutputFile(services.store)));
  WriteDriveList();
  services.trace.User("  (5.5.17) Reading configuration data");
}

void JobDriver::WriteDriveList() {
  job_.services.transfer.Trf_WriteUserProfileDefault(profile_keys::kDriveList,
                                                     job_.services.facts.DriveListText());
}

void JobDriver::ReadProfile() {
  JobRun& run = job_.state.run;
  const JobServices& services = job_.services;
  run.Sch_SQLTEMP = services.transfer.Trf_ReadUserProfile(profile_keys::kSqlTemp);
  run.APIEXCHANGE = services.transfer.Trf_ReadUserProfile(profile_keys::kApiExchange);
  run.EXCHBRICK = services.transfer.Trf_ReadUserProfile(profile_keys::kExchBrick);
  connection_.ReadAccount();
  connection_.ReadPort();
  services.machine.files.Remove(services.installation.UserFile(kSystemStateLogFile), Removal::kPlain);
}

Leave JobDriver::RefuseWithoutEncryptionPassword() {
  JobRun& run = job_.state.run;
  if (run.account.encryption_password != kNoEncryptionPassword) return std::nullopt;
  job_.trace().User(" NOENC. So could not backup ");
  run.result_text = job_texts::kBadEncryptionPassword;
  run.session_path = job_.services.session_log.NewPath();
  job_.services.session_log.WriteMessage(run.session_path, run.result_text, SessionWrite::kAppend);
  job_.keys.ClearFailureDays();
  return kJobStopped;
}

Leave JobDriver::RunStage() {
  JobRun& run = job_.state.run;
  const std::string& recordno = job_.services.schedule_file.schvTemp.recordno;
  job_.services.progress.MarkProgressRunning();
  job_.trace().plain().WriteTrace("Cont_SchBackup : Sch_SQLTEMP :: " + run.Sch_SQLTEMP);
  job_.trace().plain().WriteTrace("Cont_SchBackup : schvTemp.recordno :: " + recordno);
  if (Stage* stage = job_.services.stages.ForKind(JobKindOf(recordno))) return stage->Run(job_.state);
  run.kind_word = " ";
  job_.keys.Write(profile_keys::kRetValue, engine_results::kNone.Text());
  job_.keys.WriteStatus(StatusWord::kStarting);
  return std::nullopt;
}

void JobDriver::BeginConnection() {
  job_.machine().clock.Sleep(kBeforeConnection);
  job_.machine().clock.Sleep(kBeforeConnection);
  job_.machine().pump.Pump();
  job_.trace().User("  Sch_IPAddress : " + job_.state.run.serverip);
  job_.keys.WriteStatus(StatusWord::kStarting);
  connection_.SettleAddress();
}

void JobDriver::ResetProgressFiles() {
  const JobServices& services = job_.services;
  TextFiles(services.machine.files, services.machine.code_page)
      .Write(services.installation.UserFile(kScheduleInfoFile), "0;0;0 KB;0 KB;0;00:00:00\r\n",
             Encoding::kCodePage);
  const std::string trace_file = services.installation.UserFile(engine_files::kEngineTrace);
  if (services.machine.files.Size(trace_file).value_or(0) > kEngineTraceCapBytes) {
    services.machine.files.Remove(trace_file, Removal::kForce);
  }
  services.progress.WriteWindowStatusReset();
}

// Support engineers leave the marker on the system's drive to take a machine out of the schedule.
Leave JobDriver::EndAtSupportMarker() {
  const JobServices& services = job_.services;
  const std::string marker =
      services.machine.drives.SystemFolder().substr(0, 3) + "SupportUtility\\Support.txt";
  if (!services.machine.files.Exists(marker)) return std::nullopt;
  const std::string schedule_file = services.installation.UserFile(kScheduleFileName);
  services.trace.plain().WriteTrace("Support Utility File Exists.. So REMOVED ScheduleData File..." +
                                    schedule_file);
  return abort_.LeaveWithoutSchedule(engine_results::kScheduleEnds);
}

void JobDriver::TakeStageItems() {
  JobRun& run = job_.state.run;
  run.items.clear();
  Stage* stage = job_.services.stages.ForKind(JobKindOf(job_.services.schedule_file.schvTemp.recordno));
  if (stage != nullptr) run.items = stage->Items(job_.state);
}

void JobDriver::CheckServiceRunning() {
  const JobServices& services = job_.services;
  services.facts.CheckServiceRunning(services.installation.ProductInstallationName + " Service",
                                     job_.state.memory.ServiceRunningFlag);
}

// The local database would fill what is left of the drive.
void JobDriver::FallBackWhenSpaceIsShort() {
  const JobServices& services = job_.services;
  Options& trace = services.trace.plain();
  const double free_bytes = services.facts.GetFreeDiskBytes(services.installation.VirtualPath);
  if (free_bytes < kLeastFreeBytes) {
    services.trace.User(" Setting DB to 0 , dblFreeSpace : " + NumberText(free_bytes));
    services.transfer.Trf_WriteUserNameDBProfile(profile_keys::kLocalDatabase, "0");
    trace.WriteTrace("Deleting LDB related files");
    services.local_database.DeleteLDBFiles(services.installation.CurrentUser);
  }
  trace.WriteTrace("Checking DBDllVersion through Realtime ");
  services.machine.continuous_backup.ValidateLocalDBDllVersion();
  trace.WriteTrace("DB Val : " + services.transfer.Trf_ReadUserNameDBProfile(profile_keys::kLocalDatabase));
}

Leave JobDriver::PrepareBackupSet() {
  const JobServices& services = job_.services;
  if (Trim(services.transfer.Trf_ReadUserNameDBProfile(profile_keys::kLocalDatabase)) == "0")
    transfer_.ReadBackupSet();
  if (auto leave = abort_.TestForAbort(job_texts::kAbortedBefore28)) return leave;
  if (transfer_.UsesLocalDatabase()) {
    if (auto leave = transfer_.StartLocalDatabase()) return leave;
  }
  services.trace.User(" Calling calculatetotalsize");
  services.trace.plain().WriteTrace("checking aborted after getting contents");
  return abort_.TestForAbort(job_texts::kAbortedContents);
}

JobCode JobDriver::Transfer() {
  using Rerun = TransferRun::Rerun;
  const TransferRun::Outcome outcome =
      transfer_.Run(nested_runs_ < kMostNestedRuns ? Rerun::kGranted : Rerun::kRefused);
  switch (outcome.next) {
    case TransferRun::Next::kLeave:
      return outcome.code;
    case TransferRun::Next::kRunAgain:
      return RunAgain();
    case TransferRun::Next::kWrapUp:
      break;
  }
  if (outcome.result == engine_results::kRunAgain) {
    was_refused_a_run_ = true;
    job_.trace().User("  The engine keeps asking for another run; stopped after " +
                      std::to_string(kMostNestedRuns) + " nested runs.");
  }
  return WrapUp(outcome.result);
}

// The engine asks for the whole job once more. The inner job's code does not pass out, but for an engine
// that never stops asking: nothing was saved then.
JobCode JobDriver::RunAgain() {
  const JobCode code = job_.state.run.code;
  ++nested_runs_;
  const JobCode inner = RunOnce();
  --nested_runs_;
  job_.temp_folder.DeleteTempFolder();
  if (was_refused_a_run_) return inner;
  job_.keys.ClearFailureDays();
  return code;
}

JobCode JobDriver::WrapUp(EngineResult result) {
  const JobServices& services = job_.services;
  services.trace.User(" [CALLING] API_GET_TOTALSIZE() ");
  if (result == engine_results::kDone || result == engine_results::kQuotaUsedUp) {
    result = RefreshQuota(result);
  }
  services.trace.User("  Finished API_GET_TOTALSIZE  " + result.Text());
  TestQuota(result);
  job_.end_status.WriteJobEndStatus(result);
  const std::string dll_status = job_.keys.Read(profile_keys::kDllStatus);
  if (Trim(dll_status) == run_state::kEndedByMessage) job_.keys.WriteResult(engine_results::kCancelled);
  services.trace.User("                     *****Exit Cont_SchBackup = " +
                      std::to_string(job_.state.run.code) + " retval = " + result.Text());
  // Status after a job always shows the engine's last result, also over the one just written.
  job_.keys.WriteResult(result);
  transfer_.WriteSkippedCount();
  services.machine.files.Remove(services.installation.UserFile(kSkippedFilesFile), Removal::kForce);
  return job_.state.run.code;
}

EngineResult JobDriver::RefreshQuota(EngineResult result) {
  constexpr int kMostTries = 5;
  for (int tries = 0; tries < kMostTries; ++tries) {
    job_.temp_folder.DeleteTempFolder();
    job_.temp_folder.CreateTempFolder(job_.installation().CurrentUser, "G");
    job_.engine.RunTotalSize();
    result = job_.engine.ReadResult();
    if (result == engine_results::kDone) break;
  }
  return result;
}

void JobDriver::TestQuota(EngineResult result) {
  if (result != engine_results::kDone && result != engine_results::kQuotaUsedUp) return;
  const JobServices& services = job_.services;
  const Quota quota = ReadQuotaOutputFile(services.store);
  services.trace.User("  Total Space: " + NumberText(quota.max));
  services.trace.User("  Used Space: " + NumberText(quota.used));
  if (!quota.IsExceeded()) return;
  services.trace.User("  Quota limit exceeded");
  services.machine.files.Write(services.installation.UserFile("QuotaExceeded.txt"), "", IfPresent::kFail);
  job_.end_status.WriteJobEndStatus(engine_results::kQuotaUsedUp);
}

}  // namespace ondura
