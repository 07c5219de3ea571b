#include "job/TransferRun.h"

#include <algorithm>
#include <chrono>
#include <initializer_list>

#include "engine/engine_files.h"
#include "engine/engine_results.h"
#include "job/failure_texts.h"
#include "job/job_texts.h"
#include "text/text.h"

namespace ondura {

namespace {

using std::chrono::milliseconds;

constexpr std::string_view kDatabaseManager = "OnduraSDBManager.exe";
constexpr double kLargeTotalBytes = 5'000'000;
// What another program leaves in RetValue may be any number.
constexpr double kLargestResult = 1e9;
constexpr milliseconds kAfterEngine{1000};
constexpr milliseconds kAfterLostConnection{2000};

}  // namespace

TransferRun::TransferRun(JobContext& job, AbortForms& abort)
    : job_(job),
      abort_(abort),
      text_files_(job.machine().files, job.machine().code_page),
      selection_(job.machine(), job.installation(), job.trace()),
      exclusions_(job.machine(), job.installation(), job.services.transfer),
      stop_(job.services),
      compare_list_(job.machine(), job.installation(), job.services.transfer, exclusions_,
                    job.services.mapped_drives, stop_, job.trace()) {}

bool TransferRun::UsesLocalDatabase() {
  const std::string method = job_.services.transfer.Trf_ReadUserNameDBProfile(profile_keys::kLocalDatabase);
  return Trim(method) == "1" || Trim(method).empty();
}

void TransferRun::ReadBackupSet() {
  JobRun& run = job_.state.run;
  for (SelectedItem& item : selection_.ReadItems()) run.items.push_back(std::move(item));
  run.items_read = true;
}

Leave TransferRun::StartLocalDatabase() {
  LaunchDatabaseManager();
  if (job_.engine.RunServerList() == WaitOutcome::kStopped) return abort_.LeaveAborted(job_texts::kAborted28);
  const EngineResult result = job_.engine.ReadResult();
  job_.trace().User("  Returun value from 28 cmd : " + result.Text());
  if (engine_results::EndsJobBeforeTransfer(result)) return FailServerList(result);
  return std::nullopt;
}

void TransferRun::LaunchDatabaseManager() {
  const JobServices& services = job_.services;
  JobRun& run = job_.state.run;
  Options& trace = services.trace.plain();
  trace.WriteTrace("Launching OnduraSDBManager.exe ");
  // The blanks inside the quotes are the manager's own form.
  const std::string parameters = "\" " + services.installation.UserFolder() + "\\" +
                                 std::string{engine_files::kDatabaseFolder} + "\\ \"";
  const std::string path = services.installation.ExeLocation + std::string{kDatabaseManager};
  run.database_manager.emplace(
      services.machine.processes,
      services.programs.LaunchHidden(path, parameters, services.installation.WorkingFolder(), 0));
  trace.WriteTrace("Calling OnduraSDBManager with cmd : " + parameters);
  trace.WriteTrace("hOnduraSDBManager : " + std::to_string(run.database_manager->handle()));
  services.machine.pump.Pump();
  run.lDBManagerPID = services.programs.WhatsMyProcessID(run.database_manager->handle());
  trace.WriteTrace("lDBManagerPID : " + std::to_string(run.lDBManagerPID));
}

// The status routine runs twice here but for a wrong password: first with the result, then without a special
// text, and the last call's sentence stays.
Leave TransferRun::FailServerList(EngineResult result) {
  const JobServices& services = job_.services;
  job_.keys.AddFailureDay();
  if (engine_results::EndsSchedule(result)) return abort_.LeaveWithoutSchedule(result);
  const bool wrong_password = result == engine_results::kWrongPassword;
  if (result == engine_results::kCannotConnect) job_.end_status.WriteBackupFailed();
  if (wrong_password) {
    services.transfer.Trf_WriteUserProfile(profile_keys::kPassword, "");
    services.machine.desktop.ShowMessage(job_.state.run.new_password_text,
                                         services.installation.ProductName + " failure", MessageIcon::kStop);
  }
  abort_.RecordFailure(FailureText(result, job_texts::kConnectionFailed, services.installation.ProductName));
  if (!wrong_password) job_.end_status.WriteJobEndStatus(result);
  job_.end_status.WriteJobEndStatus(JobEnd::kOrdinary);
  return static_cast<JobCode>(result.number);
}

TransferRun::Outcome TransferRun::Run(Rerun rerun) {
  const auto leave = [](JobCode code) { return Outcome{Next::kLeave, code, {}}; };
  job_.trace().User(" [CALLING] API_ENTRY() ");
  job_.state.run.start_time = job_.machine().clock.Now();
  abnormal_ends_ = 0;
  SettleShadowTempFolder();
  ResetInputKeys();
  bool use_compare_list = false;
  if (const auto code = ChooseMethod(use_compare_list)) return leave(*code);
  if (const auto code = abort_.TestForAbort(job_texts::kAborted28)) return leave(*code);
  if (const auto code = StartEngine()) return leave(*code);
  if (use_compare_list) {
    if (const auto code = PrepareInput()) return leave(*code);
  }
  job_.trace().plain().WriteTrace(
      "Cheking user has aborted scheduled backup (After preparing CompareList Input)");
  if (abort_.AbortAsked()) return leave(abort_.LeaveAfterInput(job_texts::kAbortedInput));
  const std::string dll_status = job_.keys.Read(profile_keys::kDllStatus);
  if (dll_status == run_state::kEndedByMessage || dll_status.empty() || dll_status == run_state::kNotBegun)
    job_.keys.Write(profile_keys::kDllStatus, run_state::kTransfer);
  RewriteExcludedFiles();

  TransferWait wait(job_, abort_);
  const bool cut_off = wait.Run(*job_.state.run.engine) == TransferWait::End::kCutOff;
  CleanUpAfterEngine();
  if (cut_off) return leave(WrapUpHardStop());
  const EngineResult result = ReadEndResult();
  if (result == engine_results::kRunAgain && rerun == Rerun::kGranted) {
    return {Next::kRunAgain, job_.state.run.code, result};
  }
  job_.state.run.end_time = job_.machine().clock.Now();
  return BranchOnResult(result);
}

void TransferRun::SettleShadowTempFolder() {
  const JobServices& services = job_.services;
  const std::string base = services.transfer.Trf_ReadUserNameProfile(profile_keys::kVssTempPath);
  job_.state.run.shadow_temp_folder =
      (base.empty() ? services.installation.VirtualPath : WithBackslash(base)) + "OxVSSTEMP";
  services.trace.plain().WriteTrace(job_.state.run.shadow_temp_folder);
  services.shadow_copy.CloseVSS();
}

void TransferRun::ResetInputKeys() {
  job_.keys.Write(profile_keys::kCompareListCount, "0");
  job_.keys.Write(profile_keys::kStatusCheckCount, "0");
  job_.state.run.skipped_count = 0;
  exclusions_.Load();
}

Leave TransferRun::ChooseMethod(bool& use_compare_list) {
  Options& trace = job_.trace().plain();
  const auto trace_method = [&](std::string_view label) {
    trace.WriteTrace(std::string{label} +
                     job_.services.transfer.Trf_ReadUserNameDBProfile(profile_keys::kLocalDatabase));
  };
  trace_method("DB Val : ");
  if (!UsesLocalDatabase()) {
    use_compare_list = true;
    trace.WriteTrace("Following Comparelist method for backup");
  } else {
    trace.WriteTrace("Following DB method for backup");
    const auto ready = job_.services.local_database.CheckLDBStatus(job_.state.memory.RunFolderText);
    if (ready == kLocalDatabaseAborted) return abort_.LeaveAborted("", AbortForms::EngineEnd::kLeftRunning);
    trace_method("After LDBChecking DB Val : ");
    use_compare_list =
        Trim(job_.services.transfer.Trf_ReadUserNameDBProfile(profile_keys::kLocalDatabase)) == "0";
    // The check has left the word for a complete list, of which there is nothing yet.
    if (use_compare_list) job_.keys.Write(profile_keys::kStatusCheckCount, "0");
  }
  // The method may have changed since the selection was due to be read; without it nothing would be backed
  // up.
  if (use_compare_list && !job_.state.run.items_read) ReadBackupSet();
  return std::nullopt;
}

Leave TransferRun::StartEngine() {
  JobRun& run = job_.state.run;
  run.engine = job_.engine.StartTransfer();
  if (!run.engine) return FailUnclearedResult();
  compare_list_.RemoveOldInput();
  run.lClsClientPID = job_.services.programs.WhatsMyProcessID(run.engine->handle());
  job_.trace().plain().WriteTrace("lClsClientPID : " + std::to_string(run.lClsClientPID));
  return std::nullopt;
}

JobCode TransferRun::FailUnclearedResult() {
  job_.trace().User("  RetValue could not be cleared, so the engine was not started");
  job_.keys.AddFailureDay();
  job_.end_status.WriteBackupFailed();
  return abort_.LeaveFailed(job_texts::kCannotClearResult, JobEnd::kOrdinary);
}

Leave TransferRun::PrepareInput() {
  job_.trace().User(" DB Failed so preparing comparelistinput for backup ");
  stop_.Begin();
  if (compare_list_.Begin() == BuildStart::kReady) {
    if (auto code = WalkItems()) return code;
    compare_list_.Finish();
  }
  if (compare_list_.failed()) return FailInput();
  for (const SelectedItem& item : job_.state.run.items) {
    job_.trace().User("  Selected path :  " + item.path);
  }
  job_.state.run.items.clear();
  return WriteInputKeys() ? std::nullopt : Leave{FailInput()};
}

Leave TransferRun::WalkItems() {
  using WalkPlace = AbortForms::WalkPlace;
  if (compare_list_.HasAutomaticSelection()) {
    if (compare_list_.WalkFixedDrives() != WalkOutcome::kStopped) return std::nullopt;
    return abort_.LeaveFromWalk(WalkPlace::kWithinFolder);
  }
  for (const SelectedItem& item : job_.state.run.items) {
    const WalkOutcome outcome = compare_list_.WalkItem(item);
    if (outcome == WalkOutcome::kFailed) break;
    const bool stopped = outcome == WalkOutcome::kStopped;
    if (stopped && item.kind == ItemKind::kFolder) return abort_.LeaveFromWalk(WalkPlace::kWithinFolder);
    if (!stopped && !abort_.AbortAsked()) continue;
    compare_list_.Close();
    return abort_.LeaveFromWalk(WalkPlace::kAfterItem);
  }
  return std::nullopt;
}

// The engine still waits for lines that won't come.
JobCode TransferRun::FailInput() {
  abort_.EndPrograms();
  job_.state.run.items.clear();
  job_.keys.StampEnd();
  const JobCode code = abort_.LeaveFailed(job_texts::kListNotWritten, JobEnd::kOrdinary);
  abort_.RemoveShadowTempFolder();
  job_.temp_folder.DeleteTempFolder();
  job_.keys.AddFailureDay();
  return code;
}

// On a full disk the word that the list is complete does not come through, and the engine waits for it.
bool TransferRun::WriteInputKeys() {
  const DisplaySize total = TotalDisplaySize(job_.machine(), job_.installation()).Read();
  job_.keys.Write(profile_keys::kCompareListCount, total.size_bytes < kLargeTotalBytes ? "0" : "2");
  const std::string parts = std::to_string(compare_list_.parts());
  job_.keys.Write(profile_keys::kStatusCheckCount, parts);
  job_.state.run.skipped_count = compare_list_.skipped();
  WriteSkippedCount();
  if (job_.keys.Read(profile_keys::kStatusCheckCount) == parts) return true;
  job_.trace().User("  The compare list can't be announced. ");
  return false;
}

void TransferRun::WriteSkippedCount() {
  job_.keys.Write(profile_keys::kSkippedCount, std::to_string(job_.state.run.skipped_count));
  job_.state.run.skipped_count = 0;
}

void TransferRun::RewriteExcludedFiles() {
  using namespace engine_files;
  for (const std::string_view name : {kSent, kInSync, kCompareListTrace, kExcluded}) {
    job_.machine().files.Remove(Path(name), Removal::kPlain);
  }
  std::string lines;
  for (const std::string& path : exclusions_.Applied()) lines.append(path).append(kLineEnd);
  text_files_.Write(Path(engine_files::kExcluded), lines, Encoding::kUtf16);
}

void TransferRun::CleanUpAfterEngine() {
  const JobServices& services = job_.services;
  services.progress.WriteTransferOver();
  job_.keys.StampEnd();
  services.machine.clock.Sleep(kAfterEngine);
  const std::string& dump_folder = job_.state.run.dump_folder;
  if (job_.engine.ReadResult() == engine_results::kDone && services.machine.folders.Exists(dump_folder)) {
    services.machine.folders.Remove(dump_folder, Removal::kForce);
  }
  services.transfer.Trf_WriteUserNameRegistryProfile(profile_keys::kExcluded, "0");
  services.machine.files.Remove(Path(engine_files::kExcluded), Removal::kPlain);
  exclusions_.Clear();
}

JobCode TransferRun::WrapUpHardStop() {
  JobRun& run = job_.state.run;
  job_.keys.ClearFailureDays();
  job_.keys.WriteResult(engine_results::kDone);
  job_.temp_folder.DeleteTempFolder();
  run.result_text = job_texts::kHardStopResult;
  job_.trace().User(std::string{job_texts::kHardStopTrace} + run.session_path);
  FindSessionFile();
  job_.keys.StampEnd();
  job_.keys.Write(profile_keys::kStatusMessage, "1");
  job_.end_status.WriteStatusText(job_texts::kHardStopStatus);
  job_.end_status.WriteJobEndStatus(JobEnd::kCutOff);
  abort_.RemoveShadowTempFolder();
  job_.keys.ClearFailureDays();
  return kJobStopped;
}

EngineResult TransferRun::ReadEndResult() {
  const JobServices& services = job_.services;
  const EngineResult result = job_.engine.ReadResult();
  FindSessionFile();
  services.machine.files.Remove(Path(engine_files::kInput), Removal::kPlain);
  services.machine.files.Remove(Path(engine_files::kOutput), Removal::kPlain);
  if (engine_results::IsConnectionTrouble(result)) services.machine.clock.Sleep(kAfterLostConnection);
  if (result == engine_results::kEndedAbnormally) {
    services.trace.User("  Backup engine abnormally terminated:  " + std::to_string(abnormal_ends_));
    ++abnormal_ends_;
  }
  services.trace.User("  Returun value from API_ENTRY: " + result.Text());
  abort_.RemoveShadowTempFolder();
  for (const std::string& folder :
       {services.installation.UserFolder(), job_.temp_folder.GetTempFolderPath()}) {
    if (!folder.empty())
      services.machine.files.Remove(folder + "\\" + std::string{engine_files::kMappedDrives},
                                    Removal::kPlain);
  }
  job_.state.run.engine_status =
      static_cast<std::int64_t>(std::clamp(result.number, -kLargestResult, kLargestResult));
  return result;
}

void TransferRun::FindSessionFile() {
  job_.state.run.session_path =
      job_.services.session_log.FindLatestSessionFile(job_.services.session_log.Folder());
}

}  // namespace ondura
