#include "registration.h"

#include "ComponentObject.h"
#include "HostError.h"
#include "machines/win32/Win32Machine.h"
#include "machines/win32/handles.h"
#include "machines/win32/text_edges.h"
#include "machines/win32/windows_api.h"
#include "profile/profile_keys.h"
#include "profile/profile_paths.h"
#include "text/text.h"

namespace ondura {

namespace {

void CallEntry(const std::string& install_folder, const char* entry) {
  const Apartment apartment;
  const std::string path = WithBackslash(install_folder) + "OnduraEService.dll";
  const UniqueLibrary library{LoadLibraryExW(ToWide(path).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH)};
  if (!library.valid()) ThrowLastError("can't load " + path);
  using Entry = HRESULT(STDAPICALLTYPE*)();
  // An exported function has no type before it is given one.
  const auto call = reinterpret_cast<Entry>(reinterpret_cast<void*>(GetProcAddress(library.get(), entry)));
  if (call == nullptr) ThrowLastError(path + " has no " + entry);
  const HRESULT result = call();
  if (FAILED(result)) {
    throw HostError(std::string{entry} + " failed: " + SystemText(static_cast<unsigned long>(result)));
  }
}

// An installer names its folders with a dot at the end, which keeps their backslash away from the quote.
std::string FullPath(const std::string& path) {
  std::wstring full(32768, L'\0');
  full.resize(GetFullPathNameW(ToWide(path).c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
  return FromWide(full);
}

}  // namespace

void RegisterComponent(const std::string& install_folder) { CallEntry(install_folder, "DllRegisterServer"); }

void UnregisterComponent(const std::string& install_folder) {
  CallEntry(install_folder, "DllUnregisterServer");
}

void PointToData(const std::string& install_folder, const std::string& data_folder, bool keep) {
  Installation installation;
  installation.ExeLocation = WithBackslash(install_folder);
  const std::string file = InstallPointerPath(installation);
  const auto owner = MakeWin32Machine();
  const IniKey key{file, profile_keys::kDataFolder.section, profile_keys::kDataFolder};
  if (keep && !Trim(owner->machine().profiles.ReadString(key)).empty()) return;
  const std::string data = WithBackslash(FullPath(data_folder));
  if (FromSystem(ToSystem(data)) != data) {
    throw HostError("the data folder " + data + " has letters that this Windows can't keep in " + file +
                        "; name another one.",
                    kExitUsage);
  }
  if (!owner->machine().profiles.WriteString(key, data)) {
    throw HostError("can't write " + file + "; look at its rights.");
  }
}

}  // namespace ondura
