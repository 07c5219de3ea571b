#include "com/SystemStateObject.h"

#include "com/com_variant.h"

namespace ondura {

namespace {

PidFile PidFileOf(short nKind) { return nKind == 2 ? PidFile::kNtbackup : PidFile::kBackup; }

// The predefined keys by the numbers that callers know; every other is the machine's.
RegistryRoot RootOf(long hRoot) {
  constexpr std::uint32_t kCurrentUser = 0x80000001;
  return static_cast<std::uint32_t>(hRoot) == kCurrentUser ? RegistryRoot::kCurrentUser
                                                           : RegistryRoot::kLocalMachine;
}

}  // namespace

STDMETHODIMP SystemStateObject::LaunchNtbackup(BSTR sPath, VARIANT_BOOL* succeeded) {
  return Answer(succeeded, [&] { return state().LaunchNtbackup(TextOf(sPath)); });
}

STDMETHODIMP SystemStateObject::GetOsVersion(BSTR* name) {
  return Answer(name, [&] { return state().GetOsVersion(); });
}

STDMETHODIMP SystemStateObject::CreatePIDFile(BSTR sPID, short nKind) {
  return Run([&] { state().CreatePIDFile(TextOf(sPID), PidFileOf(nKind)); });
}

STDMETHODIMP SystemStateObject::DeletePIDFile(short nKind) {
  return Run([&] { state().DeletePIDFile(PidFileOf(nKind)); });
}

STDMETHODIMP SystemStateObject::GetPID(short nKind, BSTR* text) {
  return Answer(text, [&] { return state().GetPID(PidFileOf(nKind)); });
}

STDMETHODIMP SystemStateObject::ShellClose(long nPID, VARIANT_BOOL* has_ended) {
  return Answer(has_ended, [&] { return state().ShellClose(static_cast<ProcessId>(nPID)); });
}

STDMETHODIMP SystemStateObject::StringEndFolder(BSTR sText, BSTR sSeparator, BSTR* text) {
  return Answer(text, [&] { return clsSystemState::StringEndFolder(TextOf(sText), TextOf(sSeparator)); });
}

STDMETHODIMP SystemStateObject::GetCompName(BSTR* name) {
  return Answer(name, [&] { return state().GetCompName(); });
}

STDMETHODIMP SystemStateObject::GetLogErrorString(BSTR sJobName, VARIANT* sLogPath, BSTR* text) {
  return Answer(text, [&] {
    std::string log_path = TextOf(sLogPath);
    std::string log = state().GetLogErrorString(TextOf(sJobName), log_path);
    Assign(sLogPath, Variant(std::string_view{log_path}));
    return log;
  });
}

STDMETHODIMP SystemStateObject::CheckLogError(BSTR sBackupName, BSTR sLogPath, VARIANT_BOOL* succeeded) {
  return Answer(succeeded, [&] { return state().CheckLogError(TextOf(sBackupName), TextOf(sLogPath)); });
}

STDMETHODIMP SystemStateObject::QueryValueEx(long hRoot, BSTR sKey, BSTR sValueName, VARIANT* vValue,
                                             long* error) {
  return Answer(error, [&] {
    const std::string key = TextOf(sKey);
    const std::string value_name = TextOf(sValueName);
    RegistryValue value;
    const std::int32_t result = state().QueryValueEx({RootOf(hRoot), key, value_name}, value);
    if (result == 0 && value.type == RegistryType::kText) {
      Assign(vValue, Variant(std::string_view{value.text}));
    } else if (result == 0) {
      Assign(vValue, Variant(static_cast<std::int32_t>(value.number)));
    }
    return static_cast<long>(result);
  });
}

}  // namespace ondura
