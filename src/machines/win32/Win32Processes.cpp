#include "machines/win32/windows_api.h"

#include <psapi.h>
#include <shellapi.h>
#include <tlhelp32.h>
#include <winternl.h>

#include <algorithm>
#include <array>
#include <map>

#include "machines/win32/handles.h"
#include "machines/win32/paths.h"
#include "machines/win32/piped_child.h"
#include "machines/win32/ports.h"
#include "machines/win32/system_error.h"
#include "machines/win32/text_edges.h"

namespace ondura {

namespace {

// Keeps the handle of what was started (SEE_MASK_NOCLOSEPROCESS).
constexpr ULONG kLaunchMask = 64;

// No window has this number, so a failed start has none to show its complaint on.
HWND NoWindow() { return static_cast<HWND>(LongToHandle(1)); }

constexpr DWORD kTokenAccess = 40;  // to adjust and to query

constexpr DWORD kFirstListBytes = 8;
constexpr DWORD kFirstNeededBytes = 96;
constexpr std::size_t kModuleTableEntries = 200;
constexpr DWORD kModuleTableBytes = 200;
constexpr DWORD kModulePathBytes = 500;
constexpr DWORD kBaseNameBytes = 260;

constexpr DWORD kBelowNormalPriority = 0x4000;

// The platform's handles have 32 significant bits. Those from 0 down are none, or stand for this process.
bool IsHandle(ProcessHandle handle) { return handle > 0; }
HANDLE SystemHandle(ProcessHandle handle) { return LongToHandle(handle); }

std::vector<DWORD> ProcessIds() {
  std::vector<DWORD> ids;
  DWORD size = kFirstListBytes;
  DWORD needed = kFirstNeededBytes;
  while (size <= needed) {
    size *= 2;
    ids.resize(size / sizeof(DWORD));
    if (!EnumProcesses(ids.data(), size, &needed)) return {};
  }
  ids.resize(needed / sizeof(DWORD));
  return ids;
}

// std::nullopt for a process that may not be looked into, or that has not come as far as its first module.
std::optional<ProcessEntry> LookInto(DWORD id) {
  const UniqueHandle process{OpenProcess(static_cast<DWORD>(ProcessAccess::kQueryAndRead), FALSE, id)};
  std::array<HMODULE, kModuleTableEntries> modules{};
  DWORD needed = 0;
  if (!process.valid() || !EnumProcessModules(process.get(), modules.data(), kModuleTableBytes, &needed)) {
    return std::nullopt;
  }
  std::array<char, kModulePathBytes> path{};
  const DWORD path_length = GetModuleFileNameExA(process.get(), modules[0], path.data(), kModulePathBytes);
  std::array<char, kBaseNameBytes> name{};
  const DWORD name_length = GetModuleBaseNameA(process.get(), modules[0], name.data(), kBaseNameBytes);
  return ProcessEntry{id, FromSystem({path.data(), path_length}), FromSystem({name.data(), name_length})};
}

std::vector<ProcessEntry> ListByModules() {
  std::vector<ProcessEntry> entries;
  for (const DWORD id : ProcessIds()) {
    if (auto entry = LookInto(id)) entries.push_back(*std::move(entry));
  }
  return entries;
}

std::vector<ProcessEntry> ListBySnapshot() {
  std::vector<ProcessEntry> entries;
  const UniqueHandle snapshot{CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0)};
  PROCESSENTRY32 process{};
  process.dwSize = sizeof process;
  if (!snapshot.valid() || !Process32First(snapshot.get(), &process)) return entries;
  do {
    const std::string path = FromSystem(process.szExeFile);
    entries.push_back({process.th32ProcessID, path, path.substr(path.rfind('\\') + 1)});
  } while (Process32Next(snapshot.get(), &process));
  return entries;
}

// A launch in the bytes of the A calls.
struct SystemRequest {
  explicit SystemRequest(const LaunchRequest& request)
      : verb(ToSystem(request.verb)),
        file(ToSystem(request.file)),
        parameters(ToSystem(request.parameters)),
        folder(ToSystem(request.folder)) {}

  std::string verb;
  std::string file;
  std::string parameters;
  std::string folder;
};

// Nothing and folders can be opened as well: a window of the desktop would show them.
bool NamesProgram(const LaunchRequest& request) {
  return !request.file.empty() && !IsFolder(WidePath(request.file));
}

DWORD Milliseconds(std::chrono::milliseconds limit) {
  return static_cast<DWORD>(std::max<std::chrono::milliseconds::rep>(limit.count(), 0));
}

class Win32Processes : public Processes {
 public:
  std::vector<ProcessEntry> List(ProcessSource source) override {
    return source == ProcessSource::kSnapshot ? ListBySnapshot() : ListByModules();
  }

  ProgramState StateOf(std::string_view file) override {
    const std::wstring path = WidePath(file);
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || IsFolder(path)) return ProgramState::kMissing;
    DWORD kind = 0;
    return GetBinaryTypeW(path.c_str(), &kind) ? ProgramState::kStartable : ProgramState::kRefused;
  }

  ProcessHandle Launch(const LaunchRequest& request) override {
    if (!NamesProgram(request)) return kNoProcess;
    const SystemRequest system{request};
    SHELLEXECUTEINFOA record{};
    record.cbSize = sizeof record;
    record.fMask = kLaunchMask;
    record.hwnd = NoWindow();
    record.lpVerb = system.verb.c_str();
    record.lpFile = system.file.c_str();
    record.lpParameters = system.parameters.c_str();
    record.lpDirectory = system.folder.c_str();
    record.nShow = request.show_mode;
    if (!ShellExecuteExA(&record)) return kNoProcess;
    UniqueHandle process{record.hProcess};
    if (request.lifetime == Lifetime::kEndsWithStarter) AssignProcessToJobObject(Job(), process.get());
    return Hold(std::move(process));
  }

  bool OpenForUser(const LaunchRequest& request) override {
    if (!NamesProgram(request)) return false;
    constexpr INT_PTR kLastError = 32;
    const SystemRequest system{request};
    const HINSTANCE result =
        ShellExecuteA(NoWindow(), system.verb.c_str(), system.file.c_str(), system.parameters.c_str(),
                      system.folder.c_str(), request.show_mode);
    return reinterpret_cast<INT_PTR>(result) > kLastError;
  }

  std::unique_ptr<PipedProgram> Start(const PipedRequest& request) override {
    return StartPiped(request, Job());
  }

  std::string SystemPath(std::string_view path) override { return std::string{path}; }

  ProcessHandle OpenById(ProcessId id, ProcessAccess access) override {
    return Hold(UniqueHandle{OpenProcess(static_cast<DWORD>(access), FALSE, id)});
  }

  ProcessWait Wait(ProcessHandle handle, std::chrono::milliseconds limit) override {
    const DWORD result =
        IsHandle(handle) ? WaitForSingleObject(SystemHandle(handle), Milliseconds(limit)) : WAIT_FAILED;
    // A handle that can't be waited for spends the time all the same: callers poll in a loop.
    if (result == WAIT_FAILED) ::Sleep(Milliseconds(limit));
    return result == WAIT_OBJECT_0 ? ProcessWait::kEnded : ProcessWait::kTimedOut;
  }

  std::optional<std::uint32_t> ExitCode(ProcessHandle handle) override {
    DWORD exit_code = 0;
    const bool known = IsHandle(handle) && GetExitCodeProcess(SystemHandle(handle), &exit_code);
    return known ? std::optional<std::uint32_t>{exit_code} : std::nullopt;
  }

  ProcessId IdOf(ProcessHandle handle) override {
    PROCESS_BASIC_INFORMATION record{};
    ULONG used = 0;
    const bool known = IsHandle(handle) &&
                       NT_SUCCESS(NtQueryInformationProcess(SystemHandle(handle), ProcessBasicInformation,
                                                            &record, sizeof record, &used));
    return known ? static_cast<ProcessId>(record.UniqueProcessId) : 0;
  }

  bool Terminate(ProcessHandle handle, std::uint32_t exit_code) override {
    return IsHandle(handle) && TerminateProcess(SystemHandle(handle), exit_code);
  }

  void Close(ProcessHandle handle) override { held_.erase(handle); }

  bool EnablePrivilege(std::string_view name) override {
    UniqueHandle token;
    TOKEN_PRIVILEGES wanted{};
    wanted.PrivilegeCount = 1;
    wanted.Privileges[0].Attributes = SE_PRIVILEGE_ENABLED;
    if (!OpenProcessToken(GetCurrentProcess(), kTokenAccess, token.Receive()) ||
        !LookupPrivilegeValueA(nullptr, ToSystem(name).c_str(), &wanted.Privileges[0].Luid)) {
      return false;
    }
    // The call succeeds as well where the account lacks the privilege.
    return AdjustTokenPrivileges(token.get(), FALSE, &wanted, 0, nullptr, nullptr) &&
           LastSystemError() == SystemError::kNone;
  }

  void LowerOwnPriority() override {
    const UniqueHandle self{OpenProcess(0, FALSE, GetCurrentProcessId())};
    // A handle without rights serves the oldest systems only.
    if (!SetPriorityClass(self.get(), kBelowNormalPriority)) {
      SetPriorityClass(GetCurrentProcess(), kBelowNormalPriority);
    }
  }

 private:
  // What is in it ends with this process. A process of another job stays out on the oldest systems.
  HANDLE Job() {
    if (job_ == nullptr) {
      job_ = CreateJobObjectW(nullptr, nullptr);
      JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
      limits.BasicLimitInformation.LimitFlags =
          JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE | JOB_OBJECT_LIMIT_SILENT_BREAKAWAY_OK;
      SetInformationJobObject(job_, JobObjectExtendedLimitInformation, &limits, sizeof limits);
    }
    return job_;
  }

  // The caller's number is the platform's own handle: hosts hand theirs in and take ours out.
  ProcessHandle Hold(UniqueHandle process) {
    if (!process.valid()) return kNoProcess;
    const ProcessHandle handle = HandleToLong(process.get());
    held_[handle] = std::move(process);
    return handle;
  }

  std::map<ProcessHandle, UniqueHandle> held_;
  // Never closed here: the system closes it when this process ends, and ends what is in it.
  HANDLE job_ = nullptr;
};

}  // namespace

std::unique_ptr<Processes> MakeWin32Processes() { return std::make_unique<Win32Processes>(); }

}  // namespace ondura
