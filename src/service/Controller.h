#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "backupset/NetworkPaths.h"
#include "backupset/SizeCalculation.h"
#include "job/EngineFiles.h"
#include "job/RemoteCall.h"
#include "reporting/LogExtract.h"
#include "reporting/NotificationMail.h"
#include "schedule/ResetDate.h"
#include "service/Closeup.h"
#include "service/HostTick.h"
#include "service/JobBracket.h"
#include "service/ServiceContext.h"
#include "service/StartUp.h"
#include "stages/ExchangeBrickStage.h"
#include "stages/ExchangeStoreStage.h"

namespace ondura {

// What carries out the operations of Controller.
struct ControllerParts {
  ServiceContext& context;
  StartUp& start_up;
  HostTick& tick;
  DispatchPass& pass;
  JobBracket& bracket;
  Closeup& closeup;
  EngineFiles& engine_files;
  RemoteCall& remote_call;
  ResetDate& reset_date;
  Selection& selection;
  SizeCalculation& sizes;
  NetworkPaths& network_paths;
  LogExtract& log_extract;
  NotificationMail& notification;
  ExchangeStoreStage& exchange_store;
  ExchangeBrickStage& exchange_brick;
};

// The component as its hosts see it. Every operation hands on to the class that does the work; failures are
// dropped there, so none is reported here unless an operation says so.
class Controller {
 public:
  explicit Controller(const ControllerParts& parts) : parts_(parts) {}

  // Start-up of the service and of its background twin; `path` is the install folder.
  void cont_InitialSch(std::string_view path) { parts_.start_up.cont_InitialSch(path); }
  void cont_InitialSch_Backgrnd(std::string_view path) { parts_.start_up.cont_InitialSch_Backgrnd(path); }
  void const_InitUserdata(std::string_view user) { parts_.start_up.const_InitUserdata(user); }
  // Gives a new user the schedule and selection files that the product starts with.
  void CopyDefaults(std::string_view user);
  void Cont_login() { parts_.start_up.Cont_login(); }

  // The names derived from the product's configuration, and one value of it in clear text.
  void SetProductNames() { parts_.context.configuration.SetProductNames(); }
  std::string ReadConfigurationValue(std::string_view sSection, std::string_view sKey) {
    return parts_.context.configuration.ReadConfigurationValue(sSection, sKey);
  }

  // The service's tick, and one pass; a job runs inside and may last for hours.
  void Cont_CheckStandardRunning() { parts_.tick.Cont_CheckStandardRunning(); }
  void Cont_startschBackup() { parts_.pass.Cont_startschBackup(); }
  void Closeupoperation() { parts_.closeup.Closeupoperation(); }
  void cont_RestartRealtimeSystem() { parts_.bracket.cont_RestartRealtimeSystem(); }
  // One job on the shared state; job_state.h lists its codes.
  JobCode Cont_SchBackup() { return parts_.pass.Cont_SchBackup(); }
  void CallDummy() { parts_.remote_call.CallDummy(); }

  // Progress display and size texts.
  void ResetBackupProgressIni() { services().progress.ResetBackupProgressIni(); }
  bool EndProgress() { return services().progress.EndProgress(); }
  std::string GetProperSizeValue(double nBytes) { return services().progress.GetProperSizeValue(nBytes); }

  // Shadow copy.
  void Cont_LaunchAdminProcess() { parts_.context.shadow_copy.Cont_LaunchAdminProcess(); }
  void CloseVSS() { parts_.context.shadow_copy.CloseVSS(); }
  void CheckAndCloseVSS() { parts_.context.shadow_copy.CheckAndCloseVSS(); }

  // SQL Server dumps for which a job lacks the rights; the elevated host calls both again and again.
  void Cont_LaunchAdminProcessSQL() { parts_.context.sql_elevated.Cont_LaunchAdminProcessSQL(); }
  void Cont_LaunchSQlAdminProcess() { parts_.context.sql_elevated.Cont_LaunchSQlAdminProcess(); }

  // Exchange storage groups and mailboxes.
  void WriteExchangeBackupSet(std::string_view sLine) { parts_.exchange_store.WriteExchangeBackupSet(sLine); }
  std::int32_t FindStorageGroupCount() { return parts_.exchange_store.FindStorageGroupCount(); }
  void WriteExchBrickProfile(std::string_view sKey, std::string_view sValue) {
    parts_.exchange_brick.WriteExchBrickProfile(sKey, sValue);
  }
  std::string ReadFirstBit(std::string_view sPath) { return parts_.exchange_brick.ReadFirstBit(sPath); }
  void CheckForExchBrickCancel(int nMode) { parts_.exchange_brick.CheckForExchBrickCancel(nMode); }

  // The engine's local database.
  std::int16_t CheckLDBStatus();
  void DeleteLDBFiles(std::string_view user) { services().local_database.DeleteLDBFiles(user); }
  void VaccumDB() { services().local_database.VaccumDB(); }
  bool IsScanInProgress() { return services().local_database.IsScanInProgress(); }
  bool IsmutexInProgress(std::string_view name, bool release) {
    return services().local_database.IsmutexInProgress(name, release);
  }
  bool bCheckDate() { return parts_.reset_date.bCheckDate(); }

  // Backup set and selection.
  void DB_ReadBackdataNew(std::string_view path, std::vector<std::string>& lines) {
    parts_.context.backup_set.DB_ReadBackdataNew(path, lines);
  }
  bool HasBackupSelection() { return parts_.selection.HasBackupSelection(); }
  void RemoveDuplicate(std::vector<std::string>& list);
  std::string TrimSpaceFromPathOne(std::string_view sPath);

  // Measures the backup set of the record being handled; a stop that its user asks for ends the job.
  void CalculateTotalSize();

  // Drives and shares of the network.
  bool CheckServiceModeMappedDrive() { return services().mapped_drives.CheckServiceModeMappedDrive(); }
  std::string ReadProfilefromRegistryUNCCountSch() {
    return parts_.network_paths.ReadProfilefromRegistryUNCCountSch();
  }
  void ReadProfilefromRegistryUNCSch() { parts_.network_paths.ReadProfilefromRegistryUNCSch(); }
  void ReadUNCListfromRegistryProfile() { parts_.network_paths.ReadUNCListfromRegistryProfile(); }
  const std::vector<UNCEntry>& UNCPath() { return parts_.network_paths.UNCPath(); }

  // Extracts of a session log, and the mail about a run.
  std::string ReadLinesfromtracefiles(std::string_view sFilepath) {
    return parts_.log_extract.ReadLinesfromtracefiles(sFilepath);
  }
  std::string ReadLinesfromtracefilesWithoutLogExtract(std::string_view sFilepath) {
    return parts_.log_extract.ReadLinesfromtracefilesWithoutLogExtract(sFilepath);
  }
  void AppendLogAttach(std::string_view sLine) { parts_.log_extract.AppendLogAttach(sLine); }
  void AppendFileData(std::string_view sFilepath, std::string_view sentry) {
    parts_.log_extract.AppendFileData(sFilepath, sentry);
  }
  void SendMail(std::string_view Mailto, bool Attachlog, std::int16_t statback) {
    parts_.notification.SendMail(Mailto, Attachlog, statback);
  }
  void SendMailNew(std::string_view Mailto, std::string_view sContent) {
    parts_.notification.SendMailNew(Mailto, sContent);
  }

  // Values of the machine key.
  std::string ReadProfilefromRegistry(std::string_view param);
  std::string ReadProfilefromRegistryWithoutDeCrypt(std::string_view param);
  std::string ReadRandomNumFromRegistry(std::string_view param);

  // Temp folder and the older file interface.
  void CreateTempFolder(std::string_view sCurrentUser, std::string_view sPostfix) {
    parts_.context.job.temp_folder.CreateTempFolder(sCurrentUser, sPostfix);
  }
  std::string GetTempFolderPath() { return parts_.context.job.temp_folder.GetTempFolderPath(); }
  void DeleteTempFolder() { parts_.context.job.temp_folder.DeleteTempFolder(); }
  void DeleteInputOutFilesInTempFd() { parts_.context.job.temp_folder.DeleteInputOutFilesInTempFd(); }
  void WriteDLLInputFileTempFd(const EngineFileProxy& proxy, std::string_view AsciiRandom) {
    parts_.engine_files.WriteDLLInputFileTempFd(proxy, AsciiRandom);
  }
  EngineFileResult ResdDLLOutputFileTempFd() { return parts_.engine_files.ResdDLLOutputFileTempFd(); }
  EngineFileResult ResdDLLOutputFile() { return parts_.engine_files.ResdDLLOutputFile(); }
  bool ReadScheduleStatusFile() { return parts_.engine_files.ReadScheduleStatusFile(); }
  void CallIPPORTCheckFull() { parts_.engine_files.CallIPPORTCheckFull(); }
  void Trf_WritePORTNumbers(std::int32_t nCount) { parts_.engine_files.Trf_WritePORTNumbers(nCount); }
  void WriteGeneralMessage(FileWriter& stream);

  // Processes, machine and names.
  bool ProcessTerminate(ProcessId& lProcessID, WindowHandle lHwndWindow) {
    return services().programs.ProcessTerminate(lProcessID, lHwndWindow);
  }
  ProcessId WhatsMyProcessID(ProcessHandle hProcess) {
    return services().programs.WhatsMyProcessID(hProcess);
  }
  bool IsVista() { return services().facts.IsVista(); }
  std::string GetLocaleString(int lLocaleNum) { return services().facts.GetLocaleString(lLocaleNum); }
  std::string GetSystemTime() { return services().facts.GetSystemTime(); }
  bool CheckForWriteAccessPermission(std::string_view sFolder) {
    return services().facts.CheckForWriteAccessPermission(sFolder);
  }
  std::string GetIPFromHostName(std::string_view sHostName);
  std::string GetHostNameFromIP(std::string_view sIPAddress);

 private:
  JobServices& services() { return parts_.context.services(); }

  ControllerParts parts_;
};

}  // namespace ondura
