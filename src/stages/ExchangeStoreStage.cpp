#include "stages/ExchangeStoreStage.h"

#include <chrono>

#include "stages/exchange_dump.h"
#include "text/text.h"
#include "util/folder_size.h"

namespace ondura {

namespace {

using std::chrono::milliseconds;

constexpr std::string_view kKeyword = "OxExchangeServerBkset";
constexpr std::string_view kTool32 = "TolmeraProfExchBkp.exe";
constexpr std::string_view kTool64 = "TolmeraProf64ExchBkp.exe";
constexpr double kVersionOfTool64 = 2007;

constexpr std::string_view kGroupsFile = "TmpExchangeBackupSet.txt";
constexpr std::string_view kStatusFile = "ExchBackupStatus.txt";
constexpr std::string_view kToolTraceFile = "ExchangeTraceFile.txt";
constexpr std::string_view kReasonFile = "OxWSchErrorLogFile.txt";
constexpr std::string_view kResultFile = "ExchBackupINI.ini";
constexpr std::string_view kResultSection = "BACKEDUP STORAGE GROUPS";

constexpr milliseconds kEntryPause{2000};
constexpr milliseconds kToolStart{200};
constexpr milliseconds kToolPause{2};
constexpr milliseconds kToolEnd{10000};
constexpr milliseconds kFolderRest{20000};
constexpr milliseconds kBeforeConnection{10000};

}  // namespace

ExchangeStoreStage::ExchangeStoreStage(JobContext& job, StageSupport& support)
    : job_(job), support_(support), text_files_(job.machine().files, job.machine().code_page) {}

Leave ExchangeStoreStage::Run(JobState&) {
  support_.Begin();
  if (folder().empty()) return LeaveWithoutFolder();
  Enter();
  SettleFolder();
  const std::vector<std::string> groups = ReadGroups();
  if (!support_.CanWriteTo(folder())) return LeaveUnwritable();
  WriteGroups(groups);
  WriteRunning();
  ProcessWatch tool = LaunchTool();
  WaitForTool(tool);
  CopyResult();
  WaitUntilFolderRests();
  ReadToolStatus();
  if (cancelled_) return LeaveCancelled();
  if (tool_aborted_) return LeaveToolAborted();
  job_.machine().clock.Sleep(kBeforeConnection);
  return std::nullopt;
}

std::vector<SelectedItem> ExchangeStoreStage::Items(JobState& state) {
  job_.services.scheduler.sch_changefiledata("4");
  const std::string_view item = folder();
  state.run.dump_folder = item.ends_with('\\') ? WithoutLast(item) : item;
  return {{folder(), ItemKind::kFolder}};
}

void ExchangeStoreStage::WriteExchangeBackupSet(std::string_view sLine) {
  text_files_.Append(UserFile(kGroupsFile), std::string{sLine}.append(kLineEnd), Encoding::kUtf16,
                     IfMissing::kCreate);
}

std::int32_t ExchangeStoreStage::FindStorageGroupCount() {
  const std::string file = job_.installation().DataFile(kResultFile);
  std::int32_t count = 0;
  while (
      !job_.services.transfer.Trf_ReadExchangeProfile(kResultSection, "SG" + std::to_string(count + 1), file)
           .empty()) {
    ++count;
  }
  return count;
}

void ExchangeStoreStage::Enter() {
  support_.SetLabel(" Exchange Server ");
  support_.SleepAndPump(kEntryPause);
  cancelled_ = false;
  tool_aborted_ = false;
}

// A folder that can't be made keeps its text, and the write test finds it missing.
void ExchangeStoreStage::SettleFolder() {
  if (!Trim(folder()).empty()) {
    support_.MakeFolder(folder());
    folder() = LongFolder(folder());
  }
  support_.MakeFolder(job_.installation().VirtualPath);
}

std::vector<std::string> ExchangeStoreStage::ReadGroups() {
  Trace& trace = job_.trace();
  support_.WriteEntryKeys(engine_results::kPreparingExchangeStore);
  std::vector<std::string> groups = TakeExchangeFields(support_, kKeyword);
  trace.User(" Started Backup of Exchange Server files");
  support_.Remove(UserFile(kToolTraceFile));
  support_.EmptyBackupSet();
  trace.User(" Exchange server Path :  " + folder());
  return groups;
}

void ExchangeStoreStage::WriteGroups(const std::vector<std::string>& groups) {
  std::string lines;
  for (const std::string& group : groups) lines.append(group).append(kLineEnd);
  support_.Remove(UserFile(kGroupsFile));
  text_files_.Write(UserFile(kGroupsFile), lines, Encoding::kUtf16);
}

void ExchangeStoreStage::WriteRunning() {
  support_.Remove(UserFile(kStatusFile));
  support_.WriteLine(UserFile(kStatusFile), "1");
}

ProcessWatch ExchangeStoreStage::LaunchTool() {
  const JobServices& services = job_.services;
  const auto version = ParseNumber(services.transfer.Trf_ReadUserProfile(profile_keys::kExchVersion));
  const std::string data_folder = WithBackslash(LongFolder(services.installation.VirtualPath));
  const std::string tool = data_folder + std::string{version == kVersionOfTool64 ? kTool64 : kTool32};
  // The tool takes its folder directly after the digit.
  const std::string parameters = " 1" + folder();
  const ProcessHandle handle = services.programs.LaunchHidden(tool, parameters, WithoutLast(data_folder), 0);
  services.trace.plain().WriteTrace("\"" + tool + "\"" + parameters);
  return {services.machine.processes, handle};
}

void ExchangeStoreStage::WaitForTool(ProcessWatch& tool) {
  job_.machine().clock.Sleep(kToolStart);
  if (!tool.WasStarted()) {
    // There is nothing to wait for, and a wait would hold up all users.
    job_.trace().User(" The Exchange backup tool could not be started");
    return;
  }
  do {
    support_.SleepAndPump(kToolPause);
    if (support_.StopAsked()) {
      job_.keys.WriteStatus(StatusWord::kFailed);
      cancelled_ = true;
      StopExchangeDump(job_, support_, UserFile(kStatusFile));
      return;
    }
  } while (!tool.EndedWithin(kProcessPass));
}

void ExchangeStoreStage::CopyResult() {
  Files& files = job_.machine().files;
  const std::string result = WithBackslash(folder()) + std::string{kResultFile};
  if (!files.Exists(result)) files.Copy(job_.installation().DataFile(kResultFile), result);
  job_.machine().clock.Sleep(kToolEnd);
  job_.trace().User(" over");
}

// The tool may leave others behind that still write. A folder with nothing in it rests at once.
void ExchangeStoreStage::WaitUntilFolderRests() {
  Folders& folders = job_.machine().folders;
  std::uint64_t last_bytes = 0;
  std::uint64_t size_bytes = SizeOfFolder(folders, folder());
  while (size_bytes != last_bytes && folders.Exists(folder())) {
    last_bytes = size_bytes;
    job_.machine().clock.Sleep(kFolderRest);
    support_.ShowLife();
    size_bytes = SizeOfFolder(folders, folder());
  }
}

void ExchangeStoreStage::ReadToolStatus() {
  Trace& trace = job_.trace();
  trace.User(" Exe not running");
  const auto state = job_.machine().files.ReadHead(UserFile(kStatusFile), 1);
  if (state == "2") {
    trace.User(" Operation cancelled by user.");
    cancelled_ = true;
  }
  if (state == "4") {
    trace.User(" Operation aborted.");
    tool_aborted_ = true;
  }
  support_.WriteLine(UserFile(kStatusFile), "0");
}

JobCode ExchangeStoreStage::LeaveWithoutFolder() {
  job_.trace().User(" Exchange Temp path not found ");
  return support_.LeaveFailed(
      {" The temporary path used in the Exchange server backup operation was not found",
       "The temporary path used in the Exchange server backup operation was not found",
       TotalTime::kDifference},
      kJobStopped);
}

JobCode ExchangeStoreStage::LeaveUnwritable() {
  job_.trace().plain().WriteTrace(
      "Unable to continue the Exchange Server Backup operation, please make sure that the folder/drive "
      "exists or the disk is not full or write protected.");
  return support_.LeaveFailed(
      {" Unable to continue the Exchange server backup operation. Please check if the disk is full or write "
       "protected",
       "Unable to continue the Exchange server backup operation. Please check if the disk is full or write "
       "protected.",
       TotalTime::kDifference},
      kJobFailed);
}

JobCode ExchangeStoreStage::LeaveCancelled() {
  job_.trace().User(" User aborted the Exchange Server backup");
  return support_.LeaveFailed(
      {" The user has aborted the Exchange Server backup operation",
       "The user has aborted the Exchange Server backup operation", TotalTime::kDifference},
      kJobFailed);
}

JobCode ExchangeStoreStage::LeaveToolAborted() {
  job_.trace().User(" User aborted the Exchange Server backup");
  const std::string reason =
      text_files_.ReadFirstLine(UserFile(kReasonFile), Encoding::kCodePage).value_or("");
  return support_.LeaveFailed({" " + reason, reason, TotalTime::kDifference}, kJobFailed);
}

// The long form without a backslash at its end; the text as it is for a folder that is not there.
std::string ExchangeStoreStage::LongFolder(std::string_view path) {
  std::string long_path = job_.machine().drives.LongPath(path);
  if (long_path.empty()) return std::string{path};
  constexpr std::size_t kLengthOfRoot = 3;
  while (long_path.size() > kLengthOfRoot && long_path.ends_with('\\')) long_path.pop_back();
  return long_path;
}

}  // namespace ondura
