#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "job/JobContext.h"
#include "platform/Registry.h"
#include "stages/StageSupport.h"
#include "util/TextFiles.h"

namespace ondura {

// Whose process id a file of the user folder keeps.
enum class PidFile { kBackup = 1, kNtbackup = 2 };

// The operating system's own backup tool: runs it for the System State, hides its windows, and judges the
// log that it leaves.
class clsSystemState {
 public:
  clsSystemState(JobContext& job, StageSupport& support);

  // The running system's name, such as "XP"; empty for a system that has none here.
  std::string GetOsVersion();

  // The file with a process id as text, and nothing else. An id that is not a number, or a missing file,
  // reads as the empty text.
  void CreatePIDFile(std::string_view sPID, PidFile nKind);
  void DeletePIDFile(PidFile nKind);
  std::string GetPID(PidFile nKind);

  // Ends the process with code 0. False when it was not there or may not be ended.
  bool ShellClose(ProcessId nPID);

  // Backs the System State up into OxSystemState.bkf of the folder and waits for the end. True when the log
  // proves success; what the tool returns does not count. False too when the user stopped it.
  bool LaunchNtbackup(std::string_view sPath);

  // What comes after the last separator, letter case ignored; the whole text without one.
  static std::string StringEndFolder(std::string_view sText, std::string_view sSeparator);

  // Finds the tool's log of this job, copies it into the user's session folder and puts the copy's path into
  // `sLogPath`. Returns the log's text. Without a log the path stays as it was and the text is empty.
  std::string GetLogErrorString(std::string_view sJobName, std::string& sLogPath);

  // Reads a text or a number. 0 on success; otherwise `vValue` stays as it was: -1 for a value of another
  // type, 2 for one that is missing.
  std::int32_t QueryValueEx(const RegistryName& name, RegistryValue& vValue);

  // The verdict on the log: false for one that is missing. `sBackupName` is not looked at.
  bool CheckLogError(std::string_view sBackupName, std::string_view sLogPath);

  // The computer's name; empty on failure.
  std::string GetCompName();

 private:
  // Watches the tool until it ends. False when the user has stopped it.
  bool CheckIfBackupComplete(ProcessId nPID);
  void HideWindows();
  void StopTool(ProcessId nPID, ProcessHandle handle);
  bool IsNtbackup(ProcessId id);
  void WriteVerdict(std::string_view sPath, const std::string& backup_file, bool succeeded);
  bool JudgeLog(const std::string& job_name);

  std::string FindLogFile(std::string_view sJobName);
  RegistryValue ReadRegistryValue(std::string_view sKey, std::string_view sValueName);
  void KeepLog(const std::string& log_path, std::string_view text, const std::string& copy);

  bool CheckForErrorString(std::string_view& stream, std::string_view os_version);
  // The rest of an open text, or its next line, and nothing at its end. No routine takes single lines, but
  // the operation is the class's.
  static std::string_view ReadStreamAll(std::string_view& stream);
  static std::string_view ReadStreamLine(std::string_view& stream);

  std::string ReadDefaultFormat(std::string_view path);
  std::string PidPath(PidFile nKind) const;
  void TraceLine(std::string_view text) { job_.trace().plain().WriteTrace(text); }

  JobContext& job_;
  StageSupport& support_;
  TextFiles text_files_;
};

}  // namespace ondura
