#include <gtest/gtest.h>

#include <map>
#include <string>

#include "com_client.h"

namespace ondura_client {
namespace {

struct PublicClass {
  const wchar_t* name;
  const wchar_t* methods;  // in the order of their slots, a property's reader before its writer
};

// Early-bound callers know a method by its place alone: a class or method that moves breaks them.
const PublicClass kClasses[] = {
    {L"Controller",
     L"cont_InitialSch cont_InitialSch_Backgrnd const_InitUserdata CopyDefaults Cont_login "
     L"SetProductNames ReadConfigurationValue Cont_startschBackup Closeupoperation "
     L"cont_RestartRealtimeSystem Cont_CheckStandardRunning DB_ReadBackdataNew GetLocaleString "
     L"bCheckDate Cont_SchBackup CallDummy CreateTempFolder GetTempFolderPath DeleteTempFolder "
     L"WriteDLLInputFileTempFd ResdDLLOutputFileTempFd ResdDLLOutputFile DeleteInputOutFilesInTempFd "
     L"ReadScheduleStatusFile CallIPPORTCheckFull Trf_WritePORTNumbers WriteGeneralMessage "
     L"Cont_LaunchAdminProcessSQL Cont_LaunchSQlAdminProcess IsVista WriteExchangeBackupSet "
     L"FindStorageGroupCount WriteExchBrickProfile ReadFirstBit CheckForExchBrickCancel "
     L"Cont_LaunchAdminProcess CloseVSS CheckAndCloseVSS HasBackupSelection RemoveDuplicate "
     L"CalculateTotalSize ReadProfilefromRegistryUNCCountSch ReadProfilefromRegistryUNCSch "
     L"ReadUNCListfromRegistryProfile CheckServiceModeMappedDrive UNCCount UNCPath CheckLDBStatus "
     L"DeleteLDBFiles VaccumDB IsScanInProgress IsmutexInProgress ReadProfilefromRegistry "
     L"ReadProfilefromRegistryWithoutDeCrypt ReadRandomNumFromRegistry ReadLinesfromtracefiles "
     L"ReadLinesfromtracefilesWithoutLogExtract AppendLogAttach AppendFileData TimeDiffString SendMail "
     L"SendMailNew URLEncodeWebd UTF8_Encode ScheduleMailDetail ScheduleMailDetail ShortDateFormat "
     L"ShortDateFormat SessionLogPath SessionLogPath JobStatusText JobStatusText ScheduledTime "
     L"ScheduledTime StageWord StageWord FailureReason FailureReason MailSubject MailSubject "
     L"ScheduledTimeText ScheduledTimeText ScheduleTimeField ScheduleTimeField ResetBackupProgressIni "
     L"EndProgress GetProperSizeValue TrimSpaceFromPathOne ProcessTerminate WhatsMyProcessID "
     L"GetSystemTime CheckForWriteAccessPermission GetIPFromHostName GetHostNameFromIP "},
    {L"Scheduler",
     L"Sch_SortBuildDate Sch_Load_ScheduleData sch_changefiledata Sch_addhour_list Sch_addDay_list "
     L"ValidateAddDay Sch_addweekDay_list Sch_addweekEnd_list Sch_addWeek_list Sch_addMonth_list "
     L"sch_CheckRepeatAppend ConvertToDate ConvertToTime "},
    {L"Transfer",
     L"Trf_ReadProxyProfile Trf_ReadUserProfile Trf_ReadUserProfileNew Trf_ReadUserNameProfile "
     L"Trf_ReadUserNameProfileReg Trf_WriteUserProfile Trf_WriteUserNameProfile "
     L"Trf_WriteUserNameRegistryProfile setLindex Trf_WriteUserProfileDefault Trf_ReadPluginUserProfile "
     L"Trf_ReadUserNameDBProfile Trf_WriteUserNameDBProfile Trf_ReadServerValues Trf_ReadOutputValue "
     L"Trf_ReadExchangeProfile "},
    {L"Options", L"WriteTrace WriteTraceMain WriteTraceFile WriteTraceService Writeintofile "},
    {L"clsSystemState",
     L"GetOsVersion CreatePIDFile DeletePIDFile GetPID ShellClose LaunchNtbackup StringEndFolder "
     L"GetLogErrorString QueryValueEx CheckLogError GetCompName "},
    {L"CDummyCall",
     L"DoDummycall CreateTempFolder GetTempFolderPath DeleteInputOutFilesInTempFd DeleteTempFolder "
     L"ResdDLLOutputFile "},
    {L"cBase64", L"DecodedMessage EncodedMessage encode Decode RShiftByte Power2 "},
    {L"time", L""},
};

// The methods that the class adds to its base, by their offset in the table.
std::wstring MethodsOf(ITypeInfo& coclass) {
  HREFTYPE reference = 0;
  ComPtr<ITypeInfo> info;
  if (FAILED(coclass.GetRefTypeOfImplType(0, &reference))) return L"no interface";
  // Of a dual interface this is the dispatch half; its other half has the slots.
  coclass.GetRefTypeInfo(reference, &info);
  ComPtr<ITypeInfo> table;
  info->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference);
  info->GetRefTypeInfo(reference, &table);
  TYPEATTR* attributes = nullptr;
  table->GetTypeAttr(&attributes);
  std::map<SHORT, std::wstring> by_offset;
  for (UINT i = 0; i < attributes->cFuncs; ++i) {
    FUNCDESC* function = nullptr;
    table->GetFuncDesc(i, &function);
    Text name;
    table->GetDocumentation(function->memid, &name, nullptr, nullptr, nullptr);
    by_offset[function->oVft] = name.str();
    table->ReleaseFuncDesc(function);
  }
  table->ReleaseTypeAttr(attributes);
  std::wstring names;
  for (const auto& [offset, name] : by_offset) names += name + L" ";
  return names;
}

TEST(SlotsTest, TheTypeLibraryHasEightClassesWithTheirMethodsInOrder) {
  const Apartment apartment;
  const std::string file = ONDURA_LIBRARY;
  ComPtr<ITypeLib> library;
  ASSERT_EQ(LoadTypeLibEx(std::wstring{file.begin(), file.end()}.c_str(), REGKIND_NONE, &library), S_OK);
  std::size_t found = 0;
  for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
    TYPEKIND kind = TKIND_MAX;
    library->GetTypeInfoType(i, &kind);
    if (kind != TKIND_COCLASS) continue;
    ComPtr<ITypeInfo> coclass;
    Text name;
    library->GetTypeInfo(i, &coclass);
    library->GetDocumentation(static_cast<INT>(i), &name, nullptr, nullptr, nullptr);
    ASSERT_LT(found, std::size(kClasses)) << "more classes than are public";
    EXPECT_EQ(name.str(), kClasses[found].name);
    EXPECT_EQ(MethodsOf(*coclass.Get()), kClasses[found].methods);
    ++found;
  }
  EXPECT_EQ(found, std::size(kClasses));
}

// Calls the method of a slot after those of IDispatch with a text, as a caller without any names does.
std::wstring CallBySlot(REFCLSID class_id, std::size_t slot, const wchar_t* argument) {
  constexpr std::size_t kOfDispatch = 7;
  using Method = HRESULT(STDMETHODCALLTYPE*)(void*, BSTR, BSTR*);
  ComPtr<IDispatch> any = Create<IDispatch>(class_id);
  ComPtr<ITypeInfo> info;
  any->GetTypeInfo(0, LOCALE_USER_DEFAULT, &info);
  TYPEATTR* attributes = nullptr;
  info->GetTypeAttr(&attributes);
  void* object = nullptr;
  any->QueryInterface(attributes->guid, &object);
  info->ReleaseTypeAttr(attributes);
  Text result;
  (*static_cast<Method**>(object))[kOfDispatch + slot](object, Text(argument), &result);
  static_cast<IUnknown*>(object)->Release();
  return result.str();
}

TEST(SlotsTest, ACallerBySlotMeetsTheMethod) {
  const Apartment apartment;
  EXPECT_EQ(CallBySlot(__uuidof(Scheduler), 0, L"11-14-2026 9:05:00"), L"202611140905");
  EXPECT_EQ(CallBySlot(__uuidof(Scheduler), 5, L"no date"), L"no date");
  EXPECT_EQ(CallBySlot(__uuidof(cBase64), 2, L"hello"), L"aGVsbG8=");
  EXPECT_EQ(CallBySlot(__uuidof(cBase64), 3, L"aGVsbG8="), L"hello");
}

}  // namespace
}  // namespace ondura_client
