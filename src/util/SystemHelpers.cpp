#include "util/SystemHelpers.h"

#include "text/text.h"
#include "text/utf16.h"
#include "util/TextFiles.h"
#include "util/date_text.h"

namespace ondura {

namespace {

constexpr int kOldestSystems = 1;
constexpr int kNtFamily = 2;
constexpr int kServiceRunning = 4;
constexpr std::chrono::milliseconds kTestFilePause{10};

// What follows the last backslash and then the last slash.
std::string_view FileNameOf(std::string_view path) {
  for (const char separator : {'\\', '/'}) {
    const auto at = path.rfind(separator);
    if (at != std::string_view::npos) path.remove_prefix(at + 1);
  }
  return path;
}

bool IsMajorSix(const SystemVersion& version) {
  return version.platform_id == kNtFamily && version.major == 6;
}

}  // namespace

bool SystemHelpers::ProcessTerminate(ProcessId& lProcessID, WindowHandle lHwndWindow) {
  if (lHwndWindow != 0) {
    const ProcessId owner = machine_.desktop.ProcessOfWindow(lHwndWindow);
    if (owner != 0) lProcessID = owner;
  }
  if (lProcessID == 0) return false;
  machine_.processes.EnablePrivilege("SeDebugPrivilege");
  return EndProcess(lProcessID, ProcessAccess::kTerminate);
}

ProcessId SystemHelpers::WhatsMyProcessID(ProcessHandle hProcess) {
  return hProcess == 0 || hProcess == kNoProcess ? 0 : machine_.processes.IdOf(hProcess);
}

bool SystemHelpers::EndProcess(ProcessId id, ProcessAccess access) {
  const ProcessHandle handle = machine_.processes.OpenById(id, access);
  if (handle == kNoProcess) return false;
  const bool has_ended = machine_.processes.Terminate(handle, 0);
  machine_.processes.Close(handle);
  return has_ended;
}

ProcessTable SystemHelpers::ReadTableOfPlatform() {
  switch (GetPlatformId()) {
    case kOldestSystems:
      return machine_.processes.List(ProcessSource::kSnapshot);
    case kNtFamily:
      return machine_.processes.List(ProcessSource::kModules);
    default:
      return {};
  }
}

std::vector<ProcessId> SystemHelpers::ProcessesOfFile(std::string_view sExeName) {
  const std::string name = ToLower(sExeName);
  std::vector<ProcessId> found;
  for (const ProcessEntry& process : ReadTableOfPlatform()) {
    if (FileNameOf(ToLower(process.module_path)) == name) found.push_back(process.id);
  }
  return found;
}

bool SystemHelpers::IsProcessRunningByPath(std::string_view sExeName, Kill kill) {
  const std::vector<ProcessId> found = ProcessesOfFile(sExeName);
  if (kill == Kill::kYes && !found.empty()) {
    const bool is_snapshot = GetPlatformId() == kOldestSystems;
    const ProcessAccess access =
        is_snapshot ? ProcessAccess::kQueryAndTerminate : ProcessAccess::kQueryReadAndTerminate;
    for (const ProcessId id : found) EndProcess(id, access);
  }
  trace_.WriteTraceMain(found.empty() ? std::string{"Return false: "}
                                      : "Return ture: " + std::string{sExeName});
  return !found.empty();
}

bool SystemHelpers::IsProcessRunningByModule(std::string_view sExeName, Kill kill) {
  return IsProcessRunningByModule(sExeName, kill, ReadProcessTable());
}

bool SystemHelpers::IsProcessRunningByModule(std::string_view sExeName, Kill kill,
                                             const ProcessTable& table) {
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

std::optional<ProcessId> SystemHelpers::FindEngineProcessId(std::string_view ClientExe) {
  const std::vector<ProcessId> found = ProcessesOfFile(ClientExe);
  if (found.empty()) return std::nullopt;
  return found.back();
}

bool SystemHelpers::IsProcessInSnapshot(std::string_view sExeName) {
  return IsProcessRunningByModule(sExeName, Kill::kNo, machine_.processes.List(ProcessSource::kSnapshot));
}

int SystemHelpers::GetPlatformId() { return machine_.system.Version().platform_id; }

bool SystemHelpers::IsVistaFamily() {
  const SystemVersion version = machine_.system.Version();
  return IsMajorSix(version) && version.minor >= 0 && version.minor <= 3;
}

bool SystemHelpers::IsServer2008() {
  const SystemVersion version = machine_.system.Version();
  return IsMajorSix(version) && version.minor == 0 && !version.is_workstation;
}

ProcessHandle SystemHelpers::LaunchHidden(std::string_view sFile, std::string_view sParameters,
                                          std::string_view sDirectory, int nShow, Lifetime lifetime) {
  // One server version alone starts the programs of a service unelevated when asked to open them.
  return machine_.processes.Launch({.file = std::string{sFile},
                                    .parameters = std::string{sParameters},
                                    .folder = std::string{sDirectory},
                                    .show_mode = nShow,
                                    .verb = IsServer2008() ? "runas" : "open",
                                    .lifetime = lifetime});
}

int SystemHelpers::ServiceState(std::string_view service_name) {
  return machine_.services.State(service_name,
                                 IsVistaFamily() ? ServiceManagerAccess::kRead : ServiceManagerAccess::kAll);
}

void SystemHelpers::CheckServiceRunning(std::string_view service_name, bool& ServiceRunningFlag) {
  const int state = ServiceState(service_name);
  if (state != 0) ServiceRunningFlag = state == kServiceRunning;
}

bool SystemHelpers::LogConnectionState() {
  const ConnectedState state = machine_.internet.ExtendedState();
  const std::string flags = " Return Val from ConnectedState : " + std::to_string(state.flags);
  trace_.WriteTrace(Stamp() + flags +
                    (state.connected ? ". You are connected to Internet via a " + state.connection_name
                                     : ". You are not connected to internet"));
  // Asked only after a connection has failed, so a machine that reports one is taken to be blocked.
  const bool is_connected = machine_.internet.IsConnected();
  trace_.WriteTrace(Stamp() +
                    (is_connected ? " Firewall is blocking the Exe." : " There's no internet connection."));
  return is_connected;
}

std::optional<RegistryValue> SystemHelpers::ReadRegistryValue(RegistryRoot hRoot, std::string_view sKey,
                                                              std::string_view sValueName) {
  if (sKey.starts_with('\\')) sKey.remove_prefix(1);
  auto value =
      machine_.registry.Read({.root = hRoot, .key = sKey, .value = sValueName}, RegistryAccess::kAll);
  if (value && value->type == RegistryType::kOther) return std::nullopt;
  return value;
}

std::string SystemHelpers::ReadDataFile(std::string_view data_folder, std::string_view sName) {
  TextFiles text_files{machine_.files, machine_.code_page};
  return text_files.Read(std::string{data_folder}.append(sName), Encoding::kCodePage).value_or("");
}

bool SystemHelpers::IsFolderPath(std::string_view sPath) {
  FolderNames names;
  return IsFolderPath(sPath, names);
}

bool SystemHelpers::IsFolderPath(std::string_view sPath, FolderNames& names) {
  constexpr std::size_t kRootLength = 3;  // "C:\"
  if (Utf16Length(sPath) == kRootLength) sPath = WithoutLast(sPath);
  if (sPath.empty()) return true;
  if (machine_.folders.Exists(sPath)) return true;
  if (sPath.ends_with('\\') || machine_.files.Exists(sPath)) return false;
  return IsFirstMatchFolder(sPath, names);
}

bool SystemHelpers::IsFirstMatchFolder(std::string_view beginning, FolderNames& names) {
  const std::string_view name = FileNameOf(beginning);
  const std::string_view parent = beginning.substr(0, beginning.size() - name.size());
  if (parent.empty()) return false;
  const std::string wanted = ToUpper(name);
  const FolderNames::Names& in_parent = NamesIn(parent, names);
  const auto first = in_parent.lower_bound(wanted);
  return first != in_parent.end() && first->first.starts_with(wanted) && first->second;
}

const FolderNames::Names& SystemHelpers::NamesIn(std::string_view folder, FolderNames& names) {
  constexpr std::size_t kMostEntries = 100'000;  // about ten megabytes
  const std::string key = ToUpper(folder);
  if (const auto known = names.by_folder.find(key); known != names.by_folder.end()) return known->second;
  if (names.entries > kMostEntries) names = {};
  FolderNames::Names& in_folder = names.by_folder[key];
  machine_.folders.List(folder, [&](const FolderEntry& entry) {
    in_folder.emplace(ToUpper(entry.name), entry.is_folder);
    return Visit::kContinue;
  });
  names.entries += in_folder.size() + 1;
  return in_folder;
}

double SystemHelpers::GetFreeDiskBytes(std::string_view sPath) {
  return static_cast<double>(machine_.drives.FreeBytes(sPath).value_or(0));
}

std::string SystemHelpers::DriveListText() {
  std::string list;
  for (const std::string& root : machine_.drives.Roots()) {
    if (machine_.drives.KindOf(root) != DriveKind::kUnknown) list.append(root, 0, 2).append("|");
  }
  return list;
}

std::string SystemHelpers::GetSystemTime() { return SystemTimeText(machine_.clock.Now()); }

bool SystemHelpers::CheckForWriteAccessPermission(std::string_view sFolder) {
  const std::string path = std::string{sFolder} + "tmp.mtp";
  machine_.files.Append(path, "", IfMissing::kCreate);
  machine_.clock.Sleep(kTestFilePause);
  machine_.files.Remove(path, Removal::kForce);
  machine_.clock.Sleep(kTestFilePause);
  return true;
}

std::string SystemHelpers::Stamp() { return FormatDate(kStampPicture, machine_.clock.Now()); }

std::string SystemTimeText(LocalTime time) {
  // A colon can't be in a file name.
  return ReplaceAll(FormatDate(kStampPicture, time), ":", "-");
}

}  // namespace ondura
