#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/machine.h"
#include "util/TraceSink.h"

namespace ondura {

enum class Kill { kNo, kYes };

// One reading of the process table. A pass that asks for many programs reads it once.
using ProcessTable = std::vector<ProcessEntry>;

// What is in the folders that a list of paths asks about. A pass over the list reads each of them once.
struct FolderNames {
  // Upper-case names in alphabetical order, and whether each is a folder.
  using Names = std::map<std::string, bool>;

  std::unordered_map<std::string, Names> by_folder;
  std::size_t entries = 0;
};

// Finding, starting and ending programs, and small facts about the machine.
class SystemHelpers {
 public:
  SystemHelpers(const Machine& machine, TraceSink& trace) : machine_(machine), trace_(trace) {}

  // Ends the process. A window that exists puts its own process into `lProcessID`; a number that is no
  // window leaves it. False for id 0, and when the process was not there or may not be ended.
  bool ProcessTerminate(ProcessId& lProcessID, WindowHandle lHwndWindow);

  // The id behind a handle; 0 for an invalid handle.
  ProcessId WhatsMyProcessID(ProcessHandle hProcess);

  // True when a running program has this file name, without regard to letter case; a name with a folder
  // matches nothing. With kYes every process of the name ends. Traces the answer.
  bool IsProcessRunningByPath(std::string_view sExeName, Kill kill);

  // True when the base name of a running module is this name, without regard to letter case. With kYes
  // every process of the name ends. No trace.
  bool IsProcessRunningByModule(std::string_view sExeName, Kill kill);
  bool IsProcessRunningByModule(std::string_view sExeName, Kill kill, const ProcessTable& table);

  // The table for the form above.
  ProcessTable ReadProcessTable() { return machine_.processes.List(ProcessSource::kModules); }

  // The id of the engine's process, found as IsProcessRunningByPath finds it, without a trace. Of several the
  // last in the table.
  std::optional<ProcessId> FindEngineProcessId(std::string_view ClientExe);

  // True when a program of this name runs under any account, also one whose processes this one may not open.
  bool IsProcessInSnapshot(std::string_view sExeName);

  int GetPlatformId();
  bool IsVistaFamily();
  bool IsVista() { return IsVistaFamily(); }
  bool IsServer2008();
  bool IsWow64() { return machine_.system.IsWow64(); }
  bool Is64BitSystem() { return machine_.system.Is64Bit(); }

  // Starts a program without waiting for it; `sDirectory` has no trailing backslash, `nShow` 0 is hidden.
  // kNoProcess when nothing was started; otherwise the caller closes the handle (ProcessWatch does).
  ProcessHandle LaunchHidden(std::string_view sFile, std::string_view sParameters,
                             std::string_view sDirectory, int nShow,
                             Lifetime lifetime = Lifetime::kEndsWithStarter);

  // 1 stopped to 4 running to 7 paused; 0 on any failure.
  int ServiceState(std::string_view service_name);

  // A service that runs sets the flag and one in any other state clears it; a failed look keeps it.
  void CheckServiceRunning(std::string_view service_name, bool& ServiceRunningFlag);

  // Writes what the system says about its connection into the user's trace. True when connected.
  bool LogConnectionState();

  void SetProcessBelowNormal() { machine_.processes.LowerOwnPriority(); }

  // A text, number or byte. One backslash at the start of the key is dropped. std::nullopt for a missing
  // value and for every other type.
  std::optional<RegistryValue> ReadRegistryValue(RegistryRoot hRoot, std::string_view sKey,
                                                 std::string_view sValueName);

  // The whole text of a file in the system code page; empty when it is missing.
  std::string ReadDataFile(std::string_view data_folder, std::string_view sName);

  // True when the first entry that the path finds, taken as the start of a name, is a folder. The empty
  // path stands for the current folder and so is one.
  bool IsFolderPath(std::string_view sPath);
  bool IsFolderPath(std::string_view sPath, FolderNames& names);

  // Bytes free for the caller; 0 for a path that is missing.
  double GetFreeDiskBytes(std::string_view sPath);

  // "C:|D:|": the drives of a known kind.
  std::string DriveListText();

  // A text of the user's locale by its number (LocaleInfo.h); empty when there is none.
  std::string GetLocaleString(int lLocaleNum) { return machine_.locale.Text(lLocaleNum); }

  // The present time as it is in file names.
  std::string GetSystemTime();

  // Makes and removes a test file in the folder, whose text ends in a backslash. True in every case: all
  // there is to see is the file that comes and goes.
  bool CheckForWriteAccessPermission(std::string_view sFolder);

 private:
  ProcessTable ReadTableOfPlatform();
  std::vector<ProcessId> ProcessesOfFile(std::string_view sExeName);
  bool EndProcess(ProcessId id, ProcessAccess access);
  bool IsFirstMatchFolder(std::string_view beginning, FolderNames& names);
  const FolderNames::Names& NamesIn(std::string_view folder, FolderNames& names);
  std::string Stamp();

  Machine machine_;
  TraceSink& trace_;
};

// "MM-DD-YYYY HH-MM-SS", each part of the time with two digits.
std::string SystemTimeText(LocalTime time);

}  // namespace ondura
