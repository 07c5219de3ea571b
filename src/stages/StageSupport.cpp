#include "stages/StageSupport.h"

#include "reporting/time_diff.h"
#include "text/text.h"

namespace ondura {

namespace {

using std::chrono::milliseconds;

constexpr std::string_view kTestFile = "tmp.mtp";
constexpr milliseconds kTestFilePause{10};
constexpr std::string_view kSignOfLife = "  Waiting for the local backup";
constexpr std::string_view kTotalTimeLabel = "Total Time";

}  // namespace

StageSupport::StageSupport(JobContext& job, BackupSetStore& backup_set)
    : job_(job),
      backup_set_(backup_set),
      text_files_(job.machine().files, job.machine().code_page),
      life_(job.trace(), job.machine().clock, kSignOfLife) {}

void StageSupport::Begin() {
  started_ = job_.machine().clock.Now();
  life_.Begin();
}

void StageSupport::WriteEntryKeys(EngineResult result) {
  job_.keys.WriteStatus(StatusWord::kStarting);
  job_.keys.Write(profile_keys::kRetValue, result.Text());
}

void StageSupport::Notify(std::string_view text) { job_.trace().User("  " + std::string{text}); }

void StageSupport::SleepAndPump(milliseconds pause) {
  job_.machine().clock.Sleep(pause);
  job_.machine().pump.Pump();
  ShowLife();
}

std::vector<std::string> StageSupport::ReadBackupSetFields(std::string_view keyword) {
  backup_set_.DB_ReadBackdata();
  return FindBackupSetFields(keyword);
}

std::vector<std::string> StageSupport::FindBackupSetFields(std::string_view keyword) const {
  std::vector<std::string> fields;
  for (const std::string& line : backup_set_.BackupSetLines) {
    if (StartsWithIgnoringCase(line, keyword)) fields = Split(line, ";");
  }
  return fields;
}

bool StageSupport::FieldCounts(std::string_view field, std::string_view keyword) {
  const std::string_view text = Trim(field);
  return !text.empty() && !EqualsIgnoringCase(text, keyword);
}

void StageSupport::EmptyBackupSet() { BackupSetStore::ClearCollection(backup_set_.BackupSetLines); }

bool StageSupport::MakeFolder(std::string_view path) {
  Folders& folders = job_.machine().folders;
  return folders.Exists(path) || folders.Make(path);
}

std::string StageSupport::ShortPath(std::string_view path) {
  std::string short_path = job_.machine().drives.ShortPath(path);
  return short_path.empty() ? std::string{path} : short_path;
}

bool StageSupport::CanWriteTo(std::string_view folder) {
  const Machine& machine = job_.machine();
  const std::string path = std::string{folder}.append(kTestFile);
  const bool is_made = machine.files.Write(path, "", IfPresent::kReplace);
  machine.clock.Sleep(kTestFilePause);
  machine.files.Remove(path, Removal::kForce);
  machine.clock.Sleep(kTestFilePause);
  return is_made;
}

void StageSupport::WaitUntilGone(StartedProgram& program, milliseconds pause) {
  life_.Begin();
  do {
    SleepAndPump(pause);
  } while (program.IsRunning());
}

void StageSupport::LetToolEnd(std::string_view program) {
  life_.Begin();
  while (job_.services.programs.IsProcessRunningByModule(program, Kill::kNo)) {
    job_.machine().pump.Pump();
    ShowLife();
  }
}

bool StageSupport::StopAsked() { return job_.keys.CheckAborted() || job_.services.progress.ProgressEnded(); }

void StageSupport::WriteLine(std::string_view path, std::string_view line) {
  text_files_.Write(path, std::string{line}.append(kLineEnd), Encoding::kCodePage);
}

std::string StageSupport::ReadFirstLine(std::string_view path) {
  return std::string{Trim(text_files_.ReadFirstLine(path, Encoding::kCodePage).value_or(""))};
}

void StageSupport::Remove(std::string_view path) { job_.machine().files.Remove(path, Removal::kForce); }

void StageSupport::RecordFailure(const StageFailure& failure) {
  JobRun& run = job_.state.run;
  SessionLog& session_log = job_.services.session_log;
  run.result_text = failure.result_text;
  run.session_path = session_log.NewPath();
  job_.trace().User(failure.log_trace + run.session_path);
  session_log.WriteBlock(run.session_path, failure.result_text, SessionWrite::kAppend);
  if (failure.total_time != TotalTime::kNone) {
    session_log.AppendText(run.session_path, TotalTimeLine(failure.total_time));
  }
}

std::string StageSupport::TotalTimeLine(TotalTime kind) const {
  const std::string rest =
      kind == TotalTime::kLabel ? "        : " : TimeDiffString(started_, job_.machine().clock.Now());
  return std::string{kTotalTimeLabel}.append(rest).append(kLineEnd);
}

JobCode StageSupport::EndFailed(JobCode code) {
  job_.keys.WriteStatus(StatusWord::kFailed);
  job_.keys.Write(profile_keys::kDllStatus, run_state::kEndedByMessage);
  job_.end_status.WriteJobEndStatus(JobEnd::kOrdinary);
  job_.state.run.items.clear();
  return code;
}

JobCode StageSupport::LeaveFailed(const StageFailure& failure, JobCode code) {
  RecordFailure(failure);
  return EndFailed(code);
}

}  // namespace ondura
