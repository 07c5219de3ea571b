#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/PipedProgram.h"

namespace ondura {

// A process of this machine held by number; to be closed by whoever got it.
using ProcessHandle = std::int32_t;
inline constexpr ProcessHandle kNoProcess = -1;

using ProcessId = std::uint32_t;

// The exit code of a process that is still running.
inline constexpr std::uint32_t kStillActive = 259;

// Rights of an opened process, as the platform numbers them.
enum class ProcessAccess : std::uint32_t {
  kTerminate = 0x1,
  kQuery = 0x400,
  kQueryAndTerminate = 0x401,
  kQueryAndRead = 0x410,
  kQueryReadAndTerminate = 0x411,
};

// How the table of processes is taken: the snapshot walk (CreateToolhelp32Snapshot), which needs no rights,
// or the list of ids with their first module (EnumProcesses, EnumProcessModules), which opens each process.
enum class ProcessSource { kSnapshot, kModules };

struct ProcessEntry {
  ProcessId id = 0;
  std::string module_path;  // GetModuleFileNameExA of the first module; a snapshot may know the name alone
  std::string base_name;    // GetModuleBaseNameA of the first module
};

enum class ProcessWait { kEnded, kTimedOut };

// Whether a started program goes on without the process that started it.
enum class Lifetime { kEndsWithStarter, kOutlivesStarter };

// Whether a file could be started, as far as its rights and its first bytes show.
enum class ProgramState { kStartable, kMissing, kRefused };

struct LaunchRequest {
  std::string file;        // full path, or a bare name that the system finds, also without ".exe"
  std::string parameters;  // handed on as they are
  std::string folder;      // working folder, without a trailing backslash
  int show_mode = 0;       // 0 hidden, 1 normal, 3 maximised
  std::string verb = "open";
  Lifetime lifetime = Lifetime::kEndsWithStarter;
};

// The machine's processes.
class Processes {
 public:
  virtual ~Processes() = default;

  // A picture of the process table, empty if it can't be taken. kModules leaves out the processes that may
  // not be opened, such as those of other accounts; kSnapshot has them all.
  virtual std::vector<ProcessEntry> List(ProcessSource source) = 0;

  // What Launch would find at this full path. kMissing also for a folder. On Windows: GetBinaryTypeW.
  virtual ProgramState StateOf(std::string_view file) = 0;

  // ShellExecuteExA with the mask that keeps the process handle. kNoProcess when nothing was started. The
  // program is ended when this process ends, however that comes about, unless the request says otherwise
  // (AssignProcessToJobObject).
  virtual ProcessHandle Launch(const LaunchRequest& request) = 0;

  // ShellExecuteA: starts a program for the person at the desktop and forgets it. It outlives this process.
  // False if nothing was started.
  virtual bool OpenForUser(const LaunchRequest& request) = 0;

  // Starts a program of the system with pipes (CreateProcessW). Null if it could not be started or a text is
  // longer than kPipedTextLimit.
  virtual std::unique_ptr<PipedProgram> Start(const PipedRequest& request) = 0;

  // The path of this machine as programs of the system take it. Empty for a path that names no drive. On
  // Windows the path itself.
  virtual std::string SystemPath(std::string_view path) = 0;

  // OpenProcess. kNoProcess when there is no such process or the rights are refused.
  virtual ProcessHandle OpenById(ProcessId id, ProcessAccess access) = 0;

  // WaitForSingleObject. Only the handle of a launch promises to see the end: the rights of OpenById need not
  // hold the one to wait. What can't be waited for, kNoProcess included, spends the whole `limit` and times
  // out.
  virtual ProcessWait Wait(ProcessHandle handle, std::chrono::milliseconds limit) = 0;

  // GetExitCodeProcess; kStillActive while it runs. std::nullopt for a bad handle.
  virtual std::optional<std::uint32_t> ExitCode(ProcessHandle handle) = 0;

  // NtQueryInformationProcess, class 0. 0 for a bad handle.
  virtual ProcessId IdOf(ProcessHandle handle) = 0;

  // TerminateProcess. False when it had ended already or the rights are missing.
  virtual bool Terminate(ProcessHandle handle, std::uint32_t exit_code) = 0;

  // CloseHandle. The process goes on. Ignores kNoProcess.
  virtual void Close(ProcessHandle handle) = 0;

  // OpenProcessToken with access 40, LookupPrivilegeValueA and AdjustTokenPrivileges: enables a privilege
  // such as "SeDebugPrivilege" for this process. False if the account does not hold it.
  virtual bool EnablePrivilege(std::string_view name) = 0;

  // SetPriorityClass with BELOW_NORMAL_PRIORITY_CLASS (0x4000) on this process. A failure changes
  // nothing.
  virtual void LowerOwnPriority() = 0;
};

}  // namespace ondura
