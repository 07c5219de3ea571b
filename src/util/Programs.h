#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "util/MachineFacts.h"

namespace ondura {

enum class Kill { kNo, kYes };

// One reading of the process table. A pass that asks for many programs reads it once.
using ProcessTable = std::vector<ProcessEntry>;

// Finding, starting and ending programs.
class Programs {
 public:
  Programs(const Machine& machine, MachineFacts& facts, TraceSink& trace)
      : machine_(machine), facts_(facts), trace_(trace) {}

  // Ends the process. A window that exists puts its own process into `lProcessID`; a number that is no
  // window leaves it. False for id 0, and when the process was not there or may not be ended.
  bool ProcessTerminate(ProcessId& lProcessID, WindowHandle lHwndWindow);

  // The process id of a handle; 0 for an invalid handle.
  ProcessId WhatsMyProcessID(ProcessHandle hProcess);

  // True when a running program has this file name, without regard to letter case; a name with a folder
  // matches nothing. With kYes every process of the name ends. Traces the answer.
  bool IsProcessRunningByPath(std::string_view sExeName, Kill kill);

  // A program is known by this name alone, on the whole machine: true when the base name of a running module
  // is this name, without regard to letter case. With kYes every process of the name ends. No trace.
  bool IsProcessRunningByModule(std::string_view sExeName, Kill kill);
  bool IsProcessRunningByModule(std::string_view sExeName, Kill kill, const ProcessTable& table);

  // The table for the form above.
  ProcessTable ReadProcessTable() { return machine_.processes.List(ProcessSource::kModules); }

  // The id of the engine's process, found as IsProcessRunningByPath finds it, without a trace. Of several the
  // last in the table.
  std::optional<ProcessId> FindEngineProcessId(std::string_view ClientExe);

  // True when a program of this name runs under any account, also one whose processes this one may not open.
  bool IsProcessInSnapshot(std::string_view sExeName);

  // Starts a program without waiting for it; `sDirectory` has no trailing backslash, `nShow` 0 is hidden.
  // kNoProcess when nothing was started; otherwise the caller closes the handle (ProcessWatch does).
  ProcessHandle LaunchHidden(std::string_view sFile, std::string_view sParameters,
                             std::string_view sDirectory, int nShow,
                             Lifetime lifetime = Lifetime::kEndsWithStarter);

  // Starts a command line hidden, as a shell call does: a program with blanks in its path may come without
  // quotes. kNoProcess when nothing was started.
  ProcessHandle StartCommandLine(std::string_view command_line, std::string_view folder);

  void SetProcessBelowNormal() { machine_.processes.LowerOwnPriority(); }

 private:
  ProcessTable ReadTableOfPlatform();
  std::vector<ProcessId> ProcessesOfFile(std::string_view sExeName);
  bool EndProcess(ProcessId id, ProcessAccess access);

  Machine machine_;
  MachineFacts& facts_;
  TraceSink& trace_;
};

}  // namespace ondura
