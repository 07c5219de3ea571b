#include "stages/ExchangeBrickStage.h"

#include <chrono>

#include "stages/exchange_dump.h"
#include "text/text.h"
#include "util/waits.h"

namespace ondura {

namespace {

using std::chrono::milliseconds;

constexpr std::string_view kKeyword = "OxExchBrick";
constexpr std::string_view kTool = "OxExchBrick.exe";
constexpr std::string_view kToolLogName = "OxExchBrick";
constexpr std::string_view kDumpFolder = "OxExchBrickBkset";
constexpr std::string_view kOwnFolder = "EXCHANGEBRICKTEMP\\";

constexpr milliseconds kShortPause{1000};
constexpr milliseconds kToolKilled{2000};
constexpr milliseconds kToolPause{10};
constexpr milliseconds kToolEnd{5000};

constexpr std::string_view kUnwritable =
    "Unable to continue the Exchange server bricklevel backup operation. Please check if the disk is full or "
    "write protected";

}  // namespace

ExchangeBrickStage::ExchangeBrickStage(JobContext& job, StageSupport& support, ErrorTextSlot& error_text)
    : job_(job),
      support_(support),
      error_text_(error_text),
      text_files_(job.machine().files, job.machine().code_page) {}

Leave ExchangeBrickStage::Run(JobState& state) {
  support_.Begin();
  if (state.run.EXCHBRICK.empty()) return LeaveWithoutFolder();
  Begin();
  const std::string folder = SettleFolder();
  support_.WriteEntryKeys(engine_results::kPreparingExchangeBrick);
  const bool has_mailboxes = ReadMailboxes();
  if (!support_.CanWriteTo(folder)) return LeaveUnwritable();
  if (has_mailboxes) {
    Export(folder);
  } else {
    failed_ = true;
  }
  if (cancelled_) return LeaveCancelled();
  if (failed_) return LeaveBroken();
  return std::nullopt;
}

// The folder as the profile names it, also where the export went elsewhere because it is all blanks.
std::vector<SelectedItem> ExchangeBrickStage::Items(JobState& state) {
  const std::string item = WithBackslash(state.run.EXCHBRICK) + std::string{kDumpFolder};
  state.run.dump_folder = item;
  return {{item, ItemKind::kFolder}};
}

void ExchangeBrickStage::WriteExchBrickProfile(std::string_view sKey, std::string_view sValue) {
  const std::string file = UserFile("OxExchBrick.ini");
  if (job_.machine().profiles.WriteString({file, profile_keys::kMainSection, sKey}, sValue)) return;
  job_.trace().User(" WriteExchBrickProfile could not write " + std::string{sKey});
}

std::string ExchangeBrickStage::ReadFirstBit(std::string_view sPath) { return support_.ReadFirstLine(sPath); }

void ExchangeBrickStage::CheckForExchBrickCancel(int nMode) {
  const std::string state = ReadFirstBit(StatusFile());
  if (state == "2") {
    if (nMode == 0) cancelled_ = true;
    job_.state.run.cancelled = true;
  }
  if (state == "3") {
    failed_ = true;
    job_.state.run.cancelled = true;
    error_text_.dav_seterrorstring("Operation aborted.");
  }
}

void ExchangeBrickStage::Begin() {
  support_.Remove(StatusFile());
  MakeLogs();
  support_.SetLabel(" Exchange Server Brick-Level ");
  support_.SleepAndPump(kShortPause);
  cancelled_ = false;
  failed_ = false;
}

void ExchangeBrickStage::MakeLogs() {
  SessionLog& session_log = job_.services.session_log;
  main_log_ = session_log.NewPath();
  tool_log_ = session_log.NewPath(kToolLogName);
  for (const std::string& log : {main_log_, tool_log_}) {
    AppendTo(log, " ");
    AppendTo(log, "Username: " + job_.installation().CurrentUser);
    AppendTo(log, "Backup Operation: Scheduled");
    AppendTo(log, "Version No: 3.4.1");
  }
}

std::string ExchangeBrickStage::SettleFolder() {
  const std::string& configured = job_.state.run.EXCHBRICK;
  if (Trim(configured).empty()) {
    return WithBackslash(support_.ShortPath(job_.installation().VirtualPath)) + std::string{kOwnFolder};
  }
  support_.MakeFolder(configured);
  return WithBackslash(support_.ShortPath(configured));
}

// The tool is not told the mailboxes: they only say whether there is anything to export.
bool ExchangeBrickStage::ReadMailboxes() {
  const bool has_mailboxes = !TakeExchangeFields(support_, kKeyword).empty();
  support_.EmptyBackupSet();
  return has_mailboxes;
}

void ExchangeBrickStage::Export(const std::string& folder) {
  cancelled_ = false;
  job_.machine().clock.Sleep(kShortPause);
  WriteSettings(folder);
  PrepareRun(folder);
  StartedProgram tool = LaunchTool();
  WaitForTool(tool);
  TakeOverResult(folder);
}

void ExchangeBrickStage::WriteSettings(const std::string& folder) {
  const auto write = [this](std::string_view key, std::string_view value) {
    WriteExchBrickProfile(key, value);
    job_.machine().clock.Sleep(kShortPause);
  };
  write(profile_keys::kExchBrick, folder);
  write("SessionLog", RelativeLogPath(tool_log_));
  write("MainSessionLog", RelativeLogPath(main_log_));
}

void ExchangeBrickStage::PrepareRun(const std::string& folder) {
  job_.services.programs.IsProcessRunningByModule(kTool, Kill::kYes);
  job_.machine().clock.Sleep(kToolKilled);
  support_.Remove(StatusFile());
  support_.WriteLine(StatusFile(), "1");
  // The tool starts with a clean folder, which it makes itself.
  job_.machine().folders.Remove(WithoutLast(folder), Removal::kForce);
}

StartedProgram ExchangeBrickStage::LaunchTool() {
  const JobServices& services = job_.services;
  const Installation& installation = services.installation;
  const std::string parameters = " 1" + installation.ProductInstallationName + installation.CurrentUser + "2";
  const ProcessHandle tool = services.programs.LaunchHidden(installation.DataFile(kTool), parameters,
                                                            installation.WorkingFolder(), 0);
  return {job_.services.programs, kTool, {services.machine.processes, tool}};
}

void ExchangeBrickStage::WaitForTool(StartedProgram& tool) {
  do {
    support_.SleepAndPump(kToolPause);
    if (job_.keys.CheckAborted()) Stop();
  } while (!cancelled_ && tool.IsRunning());
}

void ExchangeBrickStage::Stop() {
  job_.keys.WriteStatus(StatusWord::kFailed);
  cancelled_ = true;
  job_.services.programs.IsProcessRunningByModule(kTool, Kill::kYes);
  StopExchangeDump(job_, support_, StatusFile());
}

void ExchangeBrickStage::TakeOverResult(const std::string& folder) {
  const Machine& machine = job_.machine();
  machine.clock.Sleep(kToolEnd);
  machine.clock.Sleep(kToolEnd);
  CheckForExchBrickCancel(0);
  if (cancelled_ || failed_ || job_.state.run.cancelled || !machine.folders.Exists(folder)) return;
  job_.trace().plain().WriteTrace(
      "Content of EnumBackupItemSet after the Exchange Brick-Level Mailbox local backup : " + folder);
}

JobCode ExchangeBrickStage::LeaveWithoutFolder() {
  job_.trace().User(" Exchange Brick Level Backup Temp path not found ");
  return support_.LeaveFailed(
      {" The temporary path used in the Exchange server brick level backup operation was not found",
       "The temporary path used in the Exchange server brick level backup operation was not found",
       TotalTime::kDifference},
      kJobStopped);
}

JobCode ExchangeBrickStage::LeaveUnwritable() {
  Trace& trace = job_.trace();
  trace.plain().WriteTrace(
      "Unable to continue the Exchange Server BrickLevel Backup operation, please make sure that the "
      "folder/drive exists or the disk is not full or write protected.");
  support_.Remove(StatusFile());
  trace.User(" " + std::string{kUnwritable} + main_log_);
  const std::string line = TimedLine(kUnwritable);
  AppendTo(main_log_, line);
  AppendTo(tool_log_, line);
  failed_ = true;
  job_.state.run.cancelled = true;
  return LeaveWith(kUnwritable);
}

JobCode ExchangeBrickStage::LeaveCancelled() {
  Trace& trace = job_.trace();
  trace.User(" User aborted the Exchange Server Brick Level backup");
  trace.User(" The user has aborted the Exchange Server Brick Level backup operation" + main_log_);
  AppendTo(main_log_, "");
  AppendTo(tool_log_, TimedLine("The user has aborted the Exchange Server backup operation"));
  return LeaveWith("The user has aborted the Exchange Server Brick Level backup operation.");
}

JobCode ExchangeBrickStage::LeaveBroken() {
  Trace& trace = job_.trace();
  trace.User(" User aborted the Exchange Server Brick Level backup");
  const auto lines = text_files_.ReadLines(tool_log_, Encoding::kUtf16).value_or(std::vector<std::string>{});
  const std::string reason = lines.empty() ? std::string{} : lines.back();
  trace.User(" " + reason + main_log_);
  AppendTo(main_log_, reason);
  return LeaveWith(reason + "Please view Exchange BrickLevel Backup Log for more information.");
}

JobCode ExchangeBrickStage::LeaveWith(std::string_view result_text) {
  job_.state.run.result_text = result_text;
  job_.state.run.session_path = main_log_;
  return support_.EndFailed(kJobFailed);
}

std::string ExchangeBrickStage::StatusFile() const { return UserFile("OxExchBrickStatus.txt"); }

std::string ExchangeBrickStage::TimedLine(std::string_view text) {
  return job_.services.facts.GetSystemTime().append("  ").append(text);
}

void ExchangeBrickStage::AppendTo(const std::string& log, std::string_view line) {
  job_.services.session_log.AppendText(log, std::string{line}.append(kLineEnd));
}

// The tool looks for its logs from the data folder on.
std::string ExchangeBrickStage::RelativeLogPath(std::string_view log) const {
  const Installation& installation = job_.installation();
  return std::string{log.substr(installation.VirtualPath.size())};
}

}  // namespace ondura
