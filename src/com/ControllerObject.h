#pragma once

#include "com/DispatchObject.h"

namespace ondura {

// The class Controller of the type library.
class ControllerObject : public DispatchObject<IController> {
 public:
  STDMETHODIMP cont_InitialSch(BSTR path) override;
  STDMETHODIMP cont_InitialSch_Backgrnd(BSTR path) override;
  STDMETHODIMP const_InitUserdata(BSTR user, VARIANT* nothing) override;
  STDMETHODIMP CopyDefaults(BSTR user) override;
  STDMETHODIMP Cont_login(VARIANT* nothing) override;
  STDMETHODIMP SetProductNames() override;
  STDMETHODIMP ReadConfigurationValue(BSTR sSection, BSTR sKey, BSTR* value) override;
  STDMETHODIMP Cont_startschBackup(VARIANT* nothing) override;
  STDMETHODIMP Closeupoperation(VARIANT* nothing) override;
  STDMETHODIMP cont_RestartRealtimeSystem(VARIANT* nothing) override;
  STDMETHODIMP Cont_CheckStandardRunning(VARIANT* nothing) override;
  STDMETHODIMP Cont_SchBackup(VARIANT* result) override;
  STDMETHODIMP DB_ReadBackdataNew(BSTR path, VARIANT* lines) override;
  STDMETHODIMP bCheckDate(VARIANT_BOOL* has_come) override;
  STDMETHODIMP HasBackupSelection(VARIANT_BOOL* has_selection) override;
  STDMETHODIMP RemoveDuplicate(VARIANT* list) override;
  STDMETHODIMP CallDummy() override;
  STDMETHODIMP CreateTempFolder(BSTR sCurrentUser, BSTR sPostfix) override;
  STDMETHODIMP GetTempFolderPath(BSTR* path) override;
  STDMETHODIMP DeleteTempFolder() override;
  STDMETHODIMP WriteDLLInputFileTempFd(long proxyexistsflag, long proxytype, BSTR proxyserverip,
                                       BSTR proxyserverport, BSTR proxyserveruname, BSTR proxyserverpwd,
                                       BSTR AsciiRandom) override;
  STDMETHODIMP ResdDLLOutputFileTempFd(VARIANT* bResult, VARIANT* lValue) override;
  STDMETHODIMP ResdDLLOutputFile(VARIANT* bResult, VARIANT* lValue) override;
  STDMETHODIMP DeleteInputOutFilesInTempFd() override;
  STDMETHODIMP ReadScheduleStatusFile(VARIANT* bResult) override;
  STDMETHODIMP CallIPPORTCheckFull() override;
  STDMETHODIMP Trf_WritePORTNumbers(long nCount) override;
  STDMETHODIMP WriteGeneralMessage(IDispatch* stream) override;
  STDMETHODIMP Cont_LaunchAdminProcess() override;
  STDMETHODIMP CloseVSS() override;
  STDMETHODIMP CheckAndCloseVSS() override;
  STDMETHODIMP CheckLDBStatus(short* status) override;
  STDMETHODIMP DeleteLDBFiles(BSTR user) override;
  STDMETHODIMP VaccumDB() override;
  STDMETHODIMP IsScanInProgress(VARIANT_BOOL* is_running) override;
  STDMETHODIMP IsmutexInProgress(BSTR name, VARIANT_BOOL release, VARIANT_BOOL* is_held) override;
  STDMETHODIMP ReadProfilefromRegistry(BSTR param, BSTR* value) override;
  STDMETHODIMP ReadProfilefromRegistryWithoutDeCrypt(BSTR param, BSTR* value) override;
  STDMETHODIMP ReadRandomNumFromRegistry(BSTR param, BSTR* value) override;
  STDMETHODIMP ResetBackupProgressIni() override;
  STDMETHODIMP EndProgress(VARIANT_BOOL* done) override;
  STDMETHODIMP GetProperSizeValue(double nBytes, BSTR* text) override;
  STDMETHODIMP TrimSpaceFromPathOne(BSTR sPath, BSTR* path) override;
  STDMETHODIMP ProcessTerminate(VARIANT* lProcessID, VARIANT* lHwndWindow, VARIANT_BOOL* has_ended) override;
  STDMETHODIMP WhatsMyProcessID(long hProcess, long* lProcessID) override;
  STDMETHODIMP IsVista(VARIANT_BOOL* is_vista) override;
  STDMETHODIMP GetLocaleString(long lLocaleNum, BSTR* text) override;
  STDMETHODIMP GetSystemTime(BSTR* text) override;
  STDMETHODIMP CheckForWriteAccessPermission(BSTR sFolder, VARIANT_BOOL* is_allowed) override;
  STDMETHODIMP GetIPFromHostName(BSTR sHostName, BSTR* address) override;
  STDMETHODIMP GetHostNameFromIP(BSTR sIPAddress, BSTR* name) override;
  STDMETHODIMP Cont_LaunchAdminProcessSQL() override;
  STDMETHODIMP Cont_LaunchSQlAdminProcess() override;
  STDMETHODIMP WriteExchangeBackupSet(BSTR sLine) override;
  STDMETHODIMP FindStorageGroupCount(long* count) override;
  STDMETHODIMP WriteExchBrickProfile(BSTR sKey, BSTR sValue) override;
  STDMETHODIMP ReadFirstBit(BSTR sPath, BSTR* line) override;
  STDMETHODIMP CheckForExchBrickCancel(short nMode) override;
  STDMETHODIMP ReadLinesfromtracefiles(BSTR sFilepath, BSTR* text) override;
  STDMETHODIMP ReadLinesfromtracefilesWithoutLogExtract(BSTR sFilepath, BSTR* text) override;
  STDMETHODIMP AppendLogAttach(BSTR sLine) override;
  STDMETHODIMP AppendFileData(BSTR sFilepath, BSTR sentry) override;
  STDMETHODIMP TimeDiffString(DATE dtmStart, DATE dtmEnd, BSTR* text) override;
  STDMETHODIMP SendMail(BSTR Mailto, BSTR Attachlog, short statback) override;
  STDMETHODIMP SendMailNew(BSTR Mailto, BSTR sContent) override;
  STDMETHODIMP URLEncodeWebd(BSTR sText, BSTR* text) override;
  STDMETHODIMP UTF8_Encode(BSTR sText, VARIANT* bytes) override;
  STDMETHODIMP get_MailSubject(BSTR* value) override;
  STDMETHODIMP put_MailSubject(BSTR value) override;
  STDMETHODIMP get_ScheduledTimeText(BSTR* value) override;
  STDMETHODIMP put_ScheduledTimeText(BSTR value) override;
  STDMETHODIMP get_ScheduleTimeField(BSTR* value) override;
  STDMETHODIMP put_ScheduleTimeField(BSTR value) override;
  STDMETHODIMP get_ScheduledTime(DATE* value) override;
  STDMETHODIMP put_ScheduledTime(DATE value) override;
  STDMETHODIMP get_ScheduleMailDetail(BSTR* value) override;
  STDMETHODIMP put_ScheduleMailDetail(BSTR value) override;
  STDMETHODIMP get_ShortDateFormat(BSTR* value) override;
  STDMETHODIMP put_ShortDateFormat(BSTR value) override;
  STDMETHODIMP get_SessionLogPath(BSTR* value) override;
  STDMETHODIMP put_SessionLogPath(BSTR value) override;
  STDMETHODIMP get_JobStatusText(BSTR* value) override;
  STDMETHODIMP put_JobStatusText(BSTR value) override;
  STDMETHODIMP get_StageWord(BSTR* value) override;
  STDMETHODIMP put_StageWord(BSTR value) override;
  STDMETHODIMP get_FailureReason(BSTR* value) override;
  STDMETHODIMP put_FailureReason(BSTR value) override;
  STDMETHODIMP CalculateTotalSize() override;
  STDMETHODIMP CheckServiceModeMappedDrive(VARIANT_BOOL* is_blocked) override;
  STDMETHODIMP ReadProfilefromRegistryUNCCountSch(BSTR* count) override;
  STDMETHODIMP ReadProfilefromRegistryUNCSch() override;
  STDMETHODIMP ReadUNCListfromRegistryProfile() override;
  STDMETHODIMP get_UNCCount(long* count) override;
  STDMETHODIMP get_UNCPath(long row, long column, BSTR* field) override;

 private:
  [[nodiscard]] Controller& core() const { return component().controller(); }
  [[nodiscard]] MailValues& mail() const { return component().mail_values(); }
};

}  // namespace ondura
