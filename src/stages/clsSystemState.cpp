#include "stages/clsSystemState.h"

#include <algorithm>
#include <chrono>

#include "backupset/StopCheck.h"
#include "profile/profile_paths.h"
#include "reporting/stage_log.h"
#include "stages/ntbackup_command.h"
#include "text/text.h"
#include "util/date_text.h"
#include "util/waits.h"

namespace ondura {

namespace {

using std::chrono::milliseconds;

constexpr std::string_view kProgram = "ntbackup.exe";
constexpr std::string_view kBackupFile = "OxSystemState.bkf";
constexpr std::string_view kBackupName = "OxSystemState";
constexpr std::string_view kJobNamePicture = "mm-dd-yyyy HH-mm-ss";
constexpr std::string_view kDialogClass = "#32770";
constexpr std::string_view kProgressTitle = "Backup Progress";
constexpr std::string_view kSelectionTitle = "Selection Information";
constexpr milliseconds kAfterLaunch{10};
constexpr milliseconds kWatchPause{1};
constexpr milliseconds kBetweenCloses{50};
constexpr int kNtPlatform = 2;

// The command line starts with the program's name, which the system looks up.
LaunchRequest HiddenShellCall(const std::string& line) {
  const std::size_t blank = line.find(' ');
  return {.file = line.substr(0, blank), .parameters = line.substr(blank + 1), .folder = {}, .show_mode = 0};
}

std::string NtName(const SystemVersion& version) {
  if (version.major >= 5 && version.minor == 2) return "2003";
  if (version.major >= 5 && version.minor == 1) return "XP";
  // Later systems with minor number 0 are taken for this one too.
  if (version.major >= 5 && version.minor == 0) return "2000";
  return version.major == 4 ? "Windows NT" : "";
}

std::string OldName(const SystemVersion& version) {
  if (version.major >= 5) return "Windows ME";
  return version.major == 4 && version.minor > 0 ? "Windows 98" : "Windows 95";
}

}  // namespace

clsSystemState::clsSystemState(JobContext& job, StageSupport& support)
    : job_(job), support_(support), text_files_(job.machine().files, job.machine().code_page) {}

std::string clsSystemState::GetOsVersion() {
  const SystemVersion version = job_.machine().system.Version();
  return version.platform_id == kNtPlatform ? NtName(version) : OldName(version);
}

std::string clsSystemState::PidPath(PidFile nKind) const {
  return job_.installation().UserFile(nKind == PidFile::kBackup ? "ABUPIDFile.dat" : "NTBPIDFile.dat");
}

void clsSystemState::CreatePIDFile(std::string_view sPID, PidFile nKind) {
  text_files_.Write(PidPath(nKind), sPID, Encoding::kCodePage);
}

void clsSystemState::DeletePIDFile(PidFile nKind) {
  job_.machine().files.Remove(PidPath(nKind), Removal::kPlain);
}

std::string clsSystemState::GetPID(PidFile nKind) {
  std::string text = text_files_.Read(PidPath(nKind), Encoding::kCodePage).value_or("");
  return ParseNumber(text) ? text : "";
}

bool clsSystemState::ShellClose(ProcessId nPID) {
  Processes& processes = job_.machine().processes;
  const ProcessWatch process(processes, processes.OpenById(nPID, ProcessAccess::kTerminate));
  return process.WasStarted() && processes.Terminate(process.handle(), 0);
}

std::string clsSystemState::StringEndFolder(std::string_view sText, std::string_view sSeparator) {
  if (sSeparator.empty()) return std::string{sText};
  for (std::size_t at = 0; at < sText.size();) {
    if (StartsWithIgnoringCase(sText.substr(at), sSeparator)) {
      sText.remove_prefix(std::min(at + sSeparator.size(), sText.size()));
      at = 0;
    } else {
      ++at;
    }
  }
  return std::string{sText};
}

std::string clsSystemState::GetCompName() { return job_.machine().system.ComputerName(); }

bool clsSystemState::LaunchNtbackup(std::string_view sPath) {
  const Machine& machine = job_.machine();
  support_.MakeFolder(sPath);
  const std::string backup_file = WithBackslash(support_.ShortPath(sPath)).append(kBackupFile);
  const std::string job_name =
      std::string{kBackupName}.append(" ").append(FormatDate(kJobNamePicture, machine.clock.Now()));
  const std::string line = NtbackupCommandLine(backup_file, job_name);
  TraceLine("NTBACKUP system state cmd line::" + line);
  const ProcessWatch tool(machine.processes, machine.processes.Launch(HiddenShellCall(line)));
  machine.clock.Sleep(kAfterLaunch);
  const ProcessId id = machine.processes.IdOf(tool.handle());
  if (id != 0) {
    CreatePIDFile(std::to_string(id), PidFile::kNtbackup);
    if (!CheckIfBackupComplete(id)) return false;
  }
  DeletePIDFile(PidFile::kNtbackup);
  const bool succeeded = JudgeLog(job_name);
  WriteVerdict(sPath, backup_file, succeeded);
  TraceLine("Exit LaunchNtbackup");
  return succeeded;
}

bool clsSystemState::JudgeLog(const std::string& job_name) {
  std::string log_path;
  GetLogErrorString(job_name, log_path);
  return CheckLogError(kBackupName, log_path);
}

void clsSystemState::WriteVerdict(std::string_view sPath, const std::string& backup_file, bool succeeded) {
  std::string text = "Failed to continue System state backup.";
  if (succeeded) {
    const std::size_t name_bytes = StringEndFolder(backup_file, "\\").size();
    const bool is_named = !sPath.empty() && sPath != "\\";
    const std::string folder =
        is_named ? std::string{sPath} : backup_file.substr(0, backup_file.size() - name_bytes);
    text = "Successfully Completed system state backup to '" + WithBackslash(folder) + "'.";
  }
  WriteStageLogLine(job_.machine(), job_.installation().UserFile(kSystemStateLogFile), text,
                    kStageInformation);
}

bool clsSystemState::CheckIfBackupComplete(ProcessId nPID) {
  const Machine& machine = job_.machine();
  TraceLine("Enter CheckIfBackupComplete");
  const ProcessWatch tool(machine.processes,
                          machine.processes.OpenById(nPID, ProcessAccess::kQueryAndTerminate));
  auto exit_code = machine.processes.ExitCode(tool.handle());
  TraceLine("System state data backup is in progress");
  // The host's end of progress does not stop the tool; the job takes note of it later.
  const bool host_stop = false;
  StatusStopCheck stop(machine, job_.installation(), host_stop);
  bool completed = true;
  while (completed && exit_code == kStillActive) {
    HideWindows();
    if (stop.Stopped()) {
      StopTool(nPID, tool.handle());
      completed = false;
    } else {
      exit_code = machine.processes.ExitCode(tool.handle());
      machine.pump.Pump();
      machine.clock.Sleep(kWatchPause);
      support_.ShowLife();
    }
  }
  TraceLine("Exit CheckIfBackupComplete");
  return completed;
}

// The tool shows both windows however it was started, and shows them again.
void clsSystemState::HideWindows() {
  Desktop& desktop = job_.machine().desktop;
  for (const std::string_view title : {kProgressTitle, kSelectionTitle}) {
    const WindowHandle window = desktop.FindTopWindow(kDialogClass, title);
    if (window != 0) desktop.Show(window, WindowShow::kHide);
  }
}

bool clsSystemState::IsNtbackup(ProcessId id) {
  return std::ranges::any_of(job_.services.programs.ReadProcessTable(), [id](const ProcessEntry& process) {
    return process.id == id && EqualsIgnoringCase(process.base_name, kProgram);
  });
}

void clsSystemState::StopTool(ProcessId nPID, ProcessHandle handle) {
  ShellClose(nPID);
  job_.machine().clock.Sleep(kBetweenCloses);
  // The number of the handle takes the place of an id, which may be anybody's.
  if (IsNtbackup(static_cast<ProcessId>(handle))) ShellClose(static_cast<ProcessId>(handle));
  TraceLine("Sent close message to ntBackup exe");
  DeletePIDFile(PidFile::kNtbackup);
}

}  // namespace ondura
