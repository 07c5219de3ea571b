#include "util/Programs.h"

#include "text/text.h"

namespace ondura {

namespace {

constexpr int kOldestSystems = 1;
constexpr int kNtFamily = 2;

struct CommandLine {
  std::string program;
  std::string parameters;
};

CommandLine CutAt(std::string_view line, std::size_t at) {
  const std::string_view rest = at < line.size() ? line.substr(at) : std::string_view{};
  return {std::string{line.substr(0, at)}, std::string{Trim(rest)}};
}

// The program is what the quotes hold, or else the shortest beginning of the line, up to a blank, that is a
// file, or else the first word.
CommandLine SplitProgram(Files& files, std::string_view line) {
  if (line.starts_with('"')) {
    const std::size_t quote = line.find('"', 1);
    CommandLine command = CutAt(line, quote == std::string_view::npos ? quote : quote + 1);
    command.program = ReplaceAll(command.program, "\"", "");
    return command;
  }
  for (std::size_t at = line.find(' '); at != std::string_view::npos; at = line.find(' ', at + 1)) {
    if (files.Exists(line.substr(0, at))) return CutAt(line, at);
  }
  return CutAt(line, files.Exists(line) ? std::string_view::npos : line.find(' '));
}

}  // namespace

bool Programs::ProcessTerminate(ProcessId& lProcessID, WindowHandle lHwndWindow) {
  if (lHwndWindow != 0) {
    const ProcessId owner = machine_.desktop.ProcessOfWindow(lHwndWindow);
    if (owner != 0) lProcessID = owner;
  }
  if (lProcessID == 0) return false;
  machine_.processes.EnablePrivilege("SeDebugPrivilege");
  return EndProcess(lProcessID, ProcessAccess::kTerminate);
}

ProcessId Programs::WhatsMyProcessID(ProcessHandle hProcess) {
  return hProcess == 0 || hProcess == kNoProcess ? 0 : machine_.processes.IdOf(hProcess);
}

bool Programs::EndProcess(ProcessId id, ProcessAccess access) {
  const ProcessHandle handle = machine_.processes.OpenById(id, access);
  if (handle == kNoProcess) return false;
  const bool has_ended = machine_.processes.Terminate(handle, 0);
  machine_.processes.Close(handle);
  return has_ended;
}

ProcessTable Programs::ReadTableOfPlatform() {
  switch (facts_.GetPlatformId()) {
    case kOldestSystems:
      return machine_.processes.List(ProcessSource::kSnapshot);
    case kNtFamily:
      return machine_.processes.List(ProcessSource::kModules);
    default:
      return {};
  }
}

std::vector<ProcessId> Programs::ProcessesOfFile(std::string_view sExeName) {
  const std::string name = ToLower(sExeName);
  std::vector<ProcessId> found;
  for (const ProcessEntry& process : ReadTableOfPlatform()) {
    if (FileNameOf(ToLower(process.module_path)) == name) found.push_back(process.id);
  }
  return found;
}

bool Programs::IsProcessRunningByPath(std::string_view sExeName, Kill kill) {
  const std::vector<ProcessId> found = ProcessesOfFile(sExeName);
  if (kill == Kill::kYes && !found.empty()) {
    const bool is_snapshot = facts_.GetPlatformId() == kOldestSystems;
    const ProcessAccess access =
        is_snapshot ? ProcessAccess::kQueryAndTerminate : ProcessAccess::kQueryReadAndTerminate;
    for (const ProcessId id : found) EndProcess(id, access);
  }
  trace_.WriteTraceMain(found.empty() ? std::string{"Return false: "}
                                      : "Return ture: " + std::string{sExeName});
  return !found.empty();
}

bool Programs::IsProcessRunningByModule(std::string_view sExeName, Kill kill) {
  return IsProcessRunningByModule(sExeName, kill, ReadProcessTable());
}

bool Programs::IsProcessRunningByModule(std::string_view sExeName, Kill kill, const ProcessTable& table) {
  const std::string name = ToUpper(sExeName);
  bool is_running = false;
  for (const ProcessEntry& process : table) {
    if (ToUpper(process.base_name) != name) continue;
    is_running = true;
    if (kill == Kill::kNo) break;
    EndProcess(process.id, ProcessAccess::kQueryReadAndTerminate);
  }
  return is_running;
}

std::optional<ProcessId> Programs::FindEngineProcessId(std::string_view ClientExe) {
  const std::vector<ProcessId> found = ProcessesOfFile(ClientExe);
  if (found.empty()) return std::nullopt;
  return found.back();
}

bool Programs::IsProcessInSnapshot(std::string_view sExeName) {
  return IsProcessRunningByModule(sExeName, Kill::kNo, machine_.processes.List(ProcessSource::kSnapshot));
}

ProcessHandle Programs::LaunchHidden(std::string_view sFile, std::string_view sParameters,
                                     std::string_view sDirectory, int nShow, Lifetime lifetime) {
  // One server version alone starts the programs of a service unelevated when asked to open them.
  return machine_.processes.Launch({.file = std::string{sFile},
                                    .parameters = std::string{sParameters},
                                    .folder = std::string{sDirectory},
                                    .show_mode = nShow,
                                    .verb = facts_.IsServer2008() ? "runas" : "open",
                                    .lifetime = lifetime});
}

ProcessHandle Programs::StartCommandLine(std::string_view command_line, std::string_view folder) {
  const CommandLine command = SplitProgram(machine_.files, Trim(command_line));
  return machine_.processes.Launch({.file = command.program,
                                    .parameters = command.parameters,
                                    .folder = std::string{folder},
                                    .show_mode = 0});
}

}  // namespace ondura
