#include "com/ControllerObject.h"

#include "com/TextStreamWriter.h"
#include "com/com_variant.h"

namespace ondura {

namespace {

void Assign(const EngineFileResult& result, VARIANT* bResult, VARIANT* lValue) {
  ondura::Assign(bResult, Variant(result.bResult));
  if (result.lValue) ondura::Assign(lValue, Variant(*result.lValue));
}

}  // namespace

STDMETHODIMP ControllerObject::cont_InitialSch(BSTR path) {
  return Run([&] { core().cont_InitialSch(TextOf(path)); });
}

STDMETHODIMP ControllerObject::cont_InitialSch_Backgrnd(BSTR path) {
  return Run([&] { core().cont_InitialSch_Backgrnd(TextOf(path)); });
}

STDMETHODIMP ControllerObject::const_InitUserdata(BSTR user, VARIANT* nothing) {
  return AnswerNothing(nothing, [&] { core().const_InitUserdata(TextOf(user)); });
}

STDMETHODIMP ControllerObject::CopyDefaults(BSTR user) {
  return Run([&] { core().CopyDefaults(TextOf(user)); });
}

STDMETHODIMP ControllerObject::Cont_login(VARIANT* nothing) {
  return AnswerNothing(nothing, [&] { core().Cont_login(); });
}

STDMETHODIMP ControllerObject::SetProductNames() {
  return Run([&] { core().SetProductNames(); });
}

STDMETHODIMP ControllerObject::ReadConfigurationValue(BSTR sSection, BSTR sKey, BSTR* value) {
  return Answer(value, [&] { return core().ReadConfigurationValue(TextOf(sSection), TextOf(sKey)); });
}

STDMETHODIMP ControllerObject::Cont_startschBackup(VARIANT* nothing) {
  return AnswerNothing(nothing, [&] { core().Cont_startschBackup(); });
}

STDMETHODIMP ControllerObject::Closeupoperation(VARIANT* nothing) {
  return AnswerNothing(nothing, [&] { core().Closeupoperation(); });
}

STDMETHODIMP ControllerObject::cont_RestartRealtimeSystem(VARIANT* nothing) {
  return AnswerNothing(nothing, [&] { core().cont_RestartRealtimeSystem(); });
}

STDMETHODIMP ControllerObject::Cont_CheckStandardRunning(VARIANT* nothing) {
  return AnswerNothing(nothing, [&] { core().Cont_CheckStandardRunning(); });
}

STDMETHODIMP ControllerObject::Cont_SchBackup(VARIANT* result) {
  return Run([&] { Assign(result, Variant(core().Cont_SchBackup())); });
}

STDMETHODIMP ControllerObject::DB_ReadBackdataNew(BSTR path, VARIANT* lines) {
  return Run([&] {
    std::vector<std::string> list = ListOf(lines);
    core().DB_ReadBackdataNew(TextOf(path), list);
    AssignList(lines, list);
  });
}

STDMETHODIMP ControllerObject::bCheckDate(VARIANT_BOOL* has_come) {
  return Answer(has_come, [&] { return core().bCheckDate(); });
}

STDMETHODIMP ControllerObject::HasBackupSelection(VARIANT_BOOL* has_selection) {
  return Answer(has_selection, [&] { return core().HasBackupSelection(); });
}

STDMETHODIMP ControllerObject::RemoveDuplicate(VARIANT* list) {
  return Run([&] {
    std::vector<std::string> paths = ListOf(list);
    core().RemoveDuplicate(paths);
    AssignList(list, paths);
  });
}

STDMETHODIMP ControllerObject::CallDummy() {
  return Run([&] { core().CallDummy(); });
}

STDMETHODIMP ControllerObject::CreateTempFolder(BSTR sCurrentUser, BSTR sPostfix) {
  return Run([&] { core().CreateTempFolder(TextOf(sCurrentUser), TextOf(sPostfix)); });
}

STDMETHODIMP ControllerObject::GetTempFolderPath(BSTR* path) {
  return Answer(path, [&] { return core().GetTempFolderPath(); });
}

STDMETHODIMP ControllerObject::DeleteTempFolder() {
  return Run([&] { core().DeleteTempFolder(); });
}

STDMETHODIMP ControllerObject::WriteDLLInputFileTempFd(long proxyexistsflag, long proxytype,
                                                       BSTR proxyserverip, BSTR proxyserverport,
                                                       BSTR proxyserveruname, BSTR proxyserverpwd,
                                                       BSTR AsciiRandom) {
  return Run([&] {
    core().WriteDLLInputFileTempFd(
        {static_cast<std::int32_t>(proxyexistsflag), static_cast<std::int32_t>(proxytype),
         TextOf(proxyserverip), TextOf(proxyserverport), TextOf(proxyserveruname), TextOf(proxyserverpwd)},
        TextOf(AsciiRandom));
  });
}

STDMETHODIMP ControllerObject::ResdDLLOutputFileTempFd(VARIANT* bResult, VARIANT* lValue) {
  return Run([&] { Assign(core().ResdDLLOutputFileTempFd(), bResult, lValue); });
}

STDMETHODIMP ControllerObject::ResdDLLOutputFile(VARIANT* bResult, VARIANT* lValue) {
  return Run([&] { Assign(core().ResdDLLOutputFile(), bResult, lValue); });
}

STDMETHODIMP ControllerObject::DeleteInputOutFilesInTempFd() {
  return Run([&] { core().DeleteInputOutFilesInTempFd(); });
}

STDMETHODIMP ControllerObject::ReadScheduleStatusFile(VARIANT* bResult) {
  return Run([&] { Assign(bResult, Variant(core().ReadScheduleStatusFile())); });
}

STDMETHODIMP ControllerObject::CallIPPORTCheckFull() {
  return Run([&] { core().CallIPPORTCheckFull(); });
}

STDMETHODIMP ControllerObject::Trf_WritePORTNumbers(long nCount) {
  return Run([&] { core().Trf_WritePORTNumbers(nCount); });
}

STDMETHODIMP ControllerObject::WriteGeneralMessage(IDispatch* stream) {
  return Run([&] {
    TextStreamWriter writer(stream);
    core().WriteGeneralMessage(writer);
  });
}

STDMETHODIMP ControllerObject::Cont_LaunchAdminProcess() {
  return Run([&] { core().Cont_LaunchAdminProcess(); });
}

STDMETHODIMP ControllerObject::CloseVSS() {
  return Run([&] { core().CloseVSS(); });
}

STDMETHODIMP ControllerObject::CheckAndCloseVSS() {
  return Run([&] { core().CheckAndCloseVSS(); });
}

STDMETHODIMP ControllerObject::CheckLDBStatus(short* status) {
  return Answer(status, [&] { return core().CheckLDBStatus(); });
}

STDMETHODIMP ControllerObject::DeleteLDBFiles(BSTR user) {
  return Run([&] { core().DeleteLDBFiles(TextOf(user)); });
}

STDMETHODIMP ControllerObject::VaccumDB() {
  return Run([&] { core().VaccumDB(); });
}

STDMETHODIMP ControllerObject::IsScanInProgress(VARIANT_BOOL* is_running) {
  return Answer(is_running, [&] { return core().IsScanInProgress(); });
}

STDMETHODIMP ControllerObject::IsmutexInProgress(BSTR name, VARIANT_BOOL release, VARIANT_BOOL* is_held) {
  return Answer(is_held, [&] { return core().IsmutexInProgress(TextOf(name), release != VARIANT_FALSE); });
}

STDMETHODIMP ControllerObject::ReadProfilefromRegistry(BSTR param, BSTR* value) {
  return Answer(value, [&] { return core().ReadProfilefromRegistry(TextOf(param)); });
}

STDMETHODIMP ControllerObject::ReadProfilefromRegistryWithoutDeCrypt(BSTR param, BSTR* value) {
  return Answer(value, [&] { return core().ReadProfilefromRegistryWithoutDeCrypt(TextOf(param)); });
}

STDMETHODIMP ControllerObject::ReadRandomNumFromRegistry(BSTR param, BSTR* value) {
  return Answer(value, [&] { return core().ReadRandomNumFromRegistry(TextOf(param)); });
}

STDMETHODIMP ControllerObject::ResetBackupProgressIni() {
  return Run([&] { core().ResetBackupProgressIni(); });
}

STDMETHODIMP ControllerObject::EndProgress(VARIANT_BOOL* done) {
  return Answer(done, [&] { return core().EndProgress(); });
}

STDMETHODIMP ControllerObject::GetProperSizeValue(double nBytes, BSTR* text) {
  return Answer(text, [&] { return core().GetProperSizeValue(nBytes); });
}

STDMETHODIMP ControllerObject::TrimSpaceFromPathOne(BSTR sPath, BSTR* path) {
  return Answer(path, [&] { return core().TrimSpaceFromPathOne(TextOf(sPath)); });
}

STDMETHODIMP ControllerObject::ProcessTerminate(VARIANT* lProcessID, VARIANT* lHwndWindow,
                                                VARIANT_BOOL* has_ended) {
  return Answer(has_ended, [&] {
    auto process = static_cast<ProcessId>(Int32Of(lProcessID));
    const bool answer = core().ProcessTerminate(process, Int32Of(lHwndWindow));
    Assign(lProcessID, Variant(static_cast<std::int32_t>(process)));
    return answer;
  });
}

STDMETHODIMP ControllerObject::WhatsMyProcessID(long hProcess, long* lProcessID) {
  return Answer(lProcessID, [&] { return static_cast<long>(core().WhatsMyProcessID(hProcess)); });
}

STDMETHODIMP ControllerObject::IsVista(VARIANT_BOOL* is_vista) {
  return Answer(is_vista, [&] { return core().IsVista(); });
}

STDMETHODIMP ControllerObject::GetLocaleString(long lLocaleNum, BSTR* text) {
  return Answer(text, [&] { return core().GetLocaleString(lLocaleNum); });
}

STDMETHODIMP ControllerObject::GetSystemTime(BSTR* text) {
  return Answer(text, [&] { return core().GetSystemTime(); });
}

STDMETHODIMP ControllerObject::CheckForWriteAccessPermission(BSTR sFolder, VARIANT_BOOL* is_allowed) {
  return Answer(is_allowed, [&] { return core().CheckForWriteAccessPermission(TextOf(sFolder)); });
}

STDMETHODIMP ControllerObject::GetIPFromHostName(BSTR sHostName, BSTR* address) {
  return Answer(address, [&] { return core().GetIPFromHostName(TextOf(sHostName)); });
}

STDMETHODIMP ControllerObject::GetHostNameFromIP(BSTR sIPAddress, BSTR* name) {
  return Answer(name, [&] { return core().GetHostNameFromIP(TextOf(sIPAddress)); });
}

STDMETHODIMP ControllerObject::Cont_LaunchAdminProcessSQL() {
  return Run([&] { core().Cont_LaunchAdminProcessSQL(); });
}

STDMETHODIMP ControllerObject::Cont_LaunchSQlAdminProcess() {
  return Run([&] { core().Cont_LaunchSQlAdminProcess(); });
}

STDMETHODIMP ControllerObject::WriteExchangeBackupSet(BSTR sLine) {
  return Run([&] { core().WriteExchangeBackupSet(TextOf(sLine)); });
}

STDMETHODIMP ControllerObject::FindStorageGroupCount(long* count) {
  return Answer(count, [&] { return static_cast<long>(core().FindStorageGroupCount()); });
}

STDMETHODIMP ControllerObject::WriteExchBrickProfile(BSTR sKey, BSTR sValue) {
  return Run([&] { core().WriteExchBrickProfile(TextOf(sKey), TextOf(sValue)); });
}

STDMETHODIMP ControllerObject::ReadFirstBit(BSTR sPath, BSTR* line) {
  return Answer(line, [&] { return core().ReadFirstBit(TextOf(sPath)); });
}

STDMETHODIMP ControllerObject::CheckForExchBrickCancel(short nMode) {
  return Run([&] { core().CheckForExchBrickCancel(nMode); });
}

}  // namespace ondura
