#include "stages/ShadowCopy.h"

#include "text/text.h"
#include "util/waits.h"

namespace ondura {

namespace {

using std::chrono::milliseconds;

constexpr std::string_view kLaunchStatusFile = "OpenFileLaunchStatus.txt";
constexpr std::string_view kCommandFile = "OpenFileCmd.txt";
constexpr std::string_view kHelperStatusFile = "VssBackupStatus.txt";
constexpr std::string_view kCommonStatusFile = "OxVSSCommonStatus.txt";
constexpr std::string_view kEngineStatusFile = "OxVSSCommonStatusDll.txt";

constexpr milliseconds kCloseTime{5000};
constexpr milliseconds kSettleTime{2000};
constexpr milliseconds kHelper32Pause{1000};
constexpr milliseconds kHelper64Start{59000};
constexpr milliseconds kHelper64Pause{3000};

}  // namespace

void ShadowCopy::CloseVSS() {
  WriteLine(kCommonStatusFile, "0");
  WriteLine(kEngineStatusFile, "0");
  trace_.User(" VSS Closed");
  machine_.clock.Sleep(kCloseTime);
}

void ShadowCopy::CheckAndCloseVSS() {
  WriteLineIfPresent(kCommonStatusFile, "0");
  WriteLineIfPresent(kEngineStatusFile, "0");
  WriteLineIfPresent(kLaunchStatusFile, "0");
  trace_.User(" VSS files are reset");
  machine_.clock.Sleep(kCloseTime);
}

void ShadowCopy::ResetLaunchStatus() { WriteLineIfPresent(kLaunchStatusFile, "0"); }

void ShadowCopy::Cont_LaunchAdminProcess() {
  if (g_bLaunchVSS) return;
  const auto request =
      text_files_.ReadFirstLine(installation_.DataFile(kLaunchStatusFile), Encoding::kCodePage);
  if (!request) return;
  g_bLaunchVSS = true;
  const bool is_64_bit = facts_.Is64BitSystem();
  if (is_64_bit) trace_.plain().WriteTraceMain("[OS] Vista 64bit");
  if (Trim(*request) == "1") {
    Serve(is_64_bit);
  }
  g_bLaunchVSS = false;
}

void ShadowCopy::Serve(bool is_64_bit) {
  const std::string& helper = is_64_bit ? installation_.VssVista64Exe : installation_.VssVista32Exe;
  const std::string command = ReadCommand();
  ProcessHandle process = kNoProcess;
  if (!command.empty() && !programs_.IsProcessRunningByModule(helper, Kill::kNo)) {
    process = LaunchHelper(helper, command);
  }
  StartedProgram started{programs_, helper, {machine_.processes, process}};
  machine_.clock.Sleep(kSettleTime);
  if (is_64_bit) {
    WaitForReport();
  } else {
    WaitForEnd(started);
  }
  machine_.clock.Sleep(kSettleTime);
  WriteLine(kLaunchStatusFile, "2");
  trace_.plain().WriteTraceMain("[VSS] Backup completed");
}

std::string ShadowCopy::ReadCommand() {
  const auto text = text_files_.Read(installation_.DataFile(kCommandFile), Encoding::kUtf16);
  if (!text) return {};
  std::string command{Trim(*text)};
  trace_.plain().WriteTrace("sCmdLine  " + command);
  return command;
}

ProcessHandle ShadowCopy::LaunchHelper(const std::string& helper, const std::string& command) {
  trace_.plain().WriteTrace("launching VSS");
  const ProcessHandle process = programs_.LaunchHidden(installation_.ExeLocation + helper, " " + command,
                                                       installation_.WorkingFolder(), 0);
  trace_.plain().WriteTraceMain("launched the exe... " + installation_.VirtualPath + helper + " " + command);
  return process;
}

void ShadowCopy::WaitForEnd(StartedProgram& helper) {
  SleepAndPumpUntil(machine_, kHelper32Pause, [&] { return !helper.IsRunning(); });
}

void ShadowCopy::WaitForReport() {
  trace_.plain().WriteTrace("[64bit OS]");
  machine_.clock.Sleep(kHelper64Start);
  const std::string report = installation_.DataFile(kHelperStatusFile);
  SleepAndPumpUntil(machine_, kHelper64Pause,
                    [&] { return text_files_.Read(report, Encoding::kCodePage) == "1"; });
}

void ShadowCopy::WriteLine(std::string_view name, std::string_view line) {
  text_files_.Write(installation_.DataFile(name), std::string{line}.append(kLineEnd), Encoding::kCodePage);
}

void ShadowCopy::WriteLineIfPresent(std::string_view name, std::string_view line) {
  if (machine_.files.Exists(installation_.DataFile(name))) WriteLine(name, line);
}

}  // namespace ondura
