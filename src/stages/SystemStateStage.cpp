#include "stages/SystemStateStage.h"

#include <chrono>

#include "profile/profile_paths.h"
#include "reporting/stage_log.h"
#include "text/text.h"
#include "util/folder_size.h"

namespace ondura {

namespace {

using std::chrono::milliseconds;

constexpr std::string_view kKeyword = "OXSYSTEMSTATEBACKUP";
constexpr std::string_view kTool = "ntbackup.exe";
constexpr std::string_view kBackupFile = "OxSystemState.bkf";
constexpr milliseconds kBeforeStart{2000};

constexpr std::string_view kNoAccess =
    "Unable to continue the System State Backup operation, Ensure that the folder/drive exists or the disk "
    "is "
    "not full or write protected.";
constexpr std::string_view kNoAccessTrace =
    " Unable to continue the system state backup operation. Ensure that the disk is full or write protected";
constexpr std::string_view kNoAccessResult =
    "Unable to continue the system state backup operation. Please check if the disk is full or write "
    "protected";
constexpr std::string_view kAborted = "User aborted/canceled the System State Backup.";
constexpr std::string_view kAbortedResult = "The user has aborted the system state backup";
constexpr std::string_view kNoFiles = " : There is NO System state backup files ";

std::string WithoutBackslash(std::string_view folder) {
  return std::string{folder.ends_with('\\') ? WithoutLast(folder) : folder};
}

}  // namespace

Leave SystemStateStage::Run(JobState& state) {
  support_.Begin();
  support_.SetLabel(" System State ");
  support_.WriteEntryKeys(engine_results::kPreparingSystemState);
  sysStatePath_ = FindFolder();
  support_.MakeFolder(sysStatePath_);
  Announce();
  if (!support_.CanWriteTo(sysStatePath_)) return LeaveWithoutAccess();
  Dump();
  return LeaveWhenStopped(state);
}

std::string SystemStateStage::FindFolder() {
  std::string path;
  for (const std::string& field : support_.ReadBackupSetFields(kKeyword)) {
    if (StageSupport::FieldCounts(field, kKeyword)) path = Trim(field);
  }
  return path.empty() || path == "\\" ? job_.installation().DataFile("SYSSTATETEMP") : path;
}

void SystemStateStage::Announce() {
  support_.SleepAndPump(kBeforeStart);
  support_.Notify("Started the system state backup to this directory - '" + sysStatePath_ + "'");
  job_.trace().User(" Started Backup of System state backup " + sysStatePath_);
  support_.Remove(job_.installation().UserFile(kSystemStateLogFile));
  support_.EmptyBackupSet();
}

JobCode SystemStateStage::LeaveWithoutAccess() {
  job_.trace().User(" " + std::string{kNoAccess});
  WriteStageLog(kNoAccess, kStageError);
  support_.RecordFailure(
      {.log_trace = std::string{kNoAccessTrace}, .result_text = std::string{kNoAccessResult}});
  job_.keys.AddFailureDay();
  return support_.EndFailed(kJobFailed);
}

// A tool that somebody else runs is left alone, and what it leaves is taken for the dump. The verdict on the
// own one is in the stage's log; the transfer takes place in either case.
void SystemStateStage::Dump() {
  if (job_.services.programs.IsProcessRunningByModule(kTool, Kill::kNo)) return;
  job_.trace().User(" Started system state backup to '" + sysStatePath_ + " ' ");
  system_state_.LaunchNtbackup(sysStatePath_);
}

// A stop that was asked for during the dump has ended the dump, and is taken note of here: the job goes on.
// Only one that comes between the two tests ends it.
Leave SystemStateStage::LeaveWhenStopped(JobState& state) {
  if (support_.StopAsked()) {
    job_.services.progress.ClearProgressEnded();
    job_.keys.WriteStatus(StatusWord::kIdle);
  }
  if (!support_.StopAsked()) return std::nullopt;
  job_.keys.WriteStatus(StatusWord::kFailed);
  job_.trace().User(" User aborted the System State Backup");
  WriteStageLog(kAborted, kStageError);
  state.run.result_text = kAbortedResult;
  state.run.session_path = job_.services.session_log.NewPath();
  job_.services.session_log.WriteBlock(state.run.session_path, kAbortedResult, SessionWrite::kAppend);
  return kJobFailed;
}

void SystemStateStage::WriteStageLog(std::string_view text, int kind) {
  WriteStageLogLine(job_.machine(), job_.installation().UserFile(kSystemStateLogFile), text, kind);
}

std::vector<SelectedItem> SystemStateStage::Items(JobState& state) {
  Trace& trace = job_.trace();
  trace.User("  sysStatePath = " + sysStatePath_);
  const std::string folder = WithoutBackslash(sysStatePath_);
  state.run.dump_folder = folder;
  if (SizeOfFolder(job_.machine().folders, folder) == 0) trace.User(kNoFiles);
  return {{folder + "\\" + std::string{kBackupFile}, ItemKind::kFile}};
}

}  // namespace ondura
