#include "system_notes.h"

#include "HostError.h"
#include "machines/win32/handles.h"
#include "machines/win32/text_edges.h"
#include "own_program.h"

namespace ondura {

namespace {

constexpr const char* kEventSources = "SYSTEM\\CurrentControlSet\\Services\\EventLog\\Application\\";

UniqueRegistryKey MakeKey(const std::string& path) {
  UniqueRegistryKey key;
  const LSTATUS code = RegCreateKeyExW(HKEY_LOCAL_MACHINE, ToWide(path).c_str(), 0, nullptr, 0, KEY_SET_VALUE,
                                       nullptr, key.Receive(), nullptr);
  if (code == ERROR_SUCCESS) return key;
  throw HostError("can't make the registry key HKLM\\" + path + ": " +
                  SystemText(static_cast<unsigned long>(code)) + ". Run this as an administrator.");
}

void SetText(const UniqueRegistryKey& key, const wchar_t* name, const std::string& text) {
  const std::wstring wide = ToWide(text);
  RegSetValueExW(key.get(), name, 0, REG_SZ, reinterpret_cast<const BYTE*>(wide.c_str()),
                 static_cast<DWORD>((wide.size() + 1) * sizeof(wchar_t)));
}

}  // namespace

void AddEventSources(const std::vector<std::string>& names) {
  constexpr DWORD kAllTypes = EVENTLOG_ERROR_TYPE | EVENTLOG_WARNING_TYPE | EVENTLOG_INFORMATION_TYPE;
  for (const std::string& name : names) {
    const UniqueRegistryKey key = MakeKey(kEventSources + name);
    SetText(key, L"EventMessageFile", OwnPath());
    RegSetValueExW(key.get(), L"TypesSupported", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&kAllTypes),
                   sizeof kAllTypes);
  }
}

void RemoveEventSources(const std::vector<std::string>& names) {
  for (const std::string& name : names) {
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, ToWide(kEventSources + name).c_str());
  }
}

void RememberFolders(const std::string& product, const std::string& install_folder,
                     const std::string& data_folder) {
  const UniqueRegistryKey key = MakeKey("Software\\" + product + "\\Setup");
  SetText(key, L"InstallFolder", install_folder);
  SetText(key, L"DataFolder", data_folder);
}

}  // namespace ondura
