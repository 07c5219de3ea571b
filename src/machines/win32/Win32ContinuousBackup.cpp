#include <string>

#include "machines/win32/handles.h"
#include "machines/win32/ports.h"

namespace ondura {

namespace {

constexpr const wchar_t* kLibraryName = L"OnduraERealTime.dll";

constexpr std::size_t kLongestPath = 32768;

using PostStatus = void(WINAPI*)(LONG state);
using ValidateVersion = void(WINAPI*)();

// The folder, with its backslash, of a module of this process; null is the program itself. Empty where the
// system does not say.
std::wstring FolderOf(HMODULE module) {
  std::wstring path(kLongestPath, L'\0');
  const DWORD length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
  path.resize(length < path.size() ? length : 0);
  path.resize(path.rfind(L'\\') + 1);
  return path;
}

// The module that holds this component.
HMODULE OwnModule() {
  constexpr DWORD kByAddress =
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
  HMODULE module = nullptr;
  GetModuleHandleExW(kByAddress, reinterpret_cast<const wchar_t*>(&OwnModule), &module);
  return module;
}

// From the component's folder or else the program's, and from nowhere else: whoever may write to a folder
// of the search path may not run code in the service.
UniqueLibrary LoadClientLibrary() {
  for (const HMODULE module : {OwnModule(), HMODULE{}}) {
    const std::wstring folder = FolderOf(module);
    if (folder.empty()) continue;  // the bare name would be searched for
    UniqueLibrary library{
        LoadLibraryExW((folder + kLibraryName).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH)};
    if (library.valid()) return library;
  }
  return {};
}

class Win32ContinuousBackup : public ContinuousBackup {
 public:
  void PostCDPStatusMsg(ContinuousBackupState state) override {
    if (const auto post = Find<PostStatus>("PostCDPStatusMsg")) post(static_cast<LONG>(state));
  }

  void ValidateLocalDBDllVersion() override {
    if (const auto validate = Find<ValidateVersion>("ValidateLocalDBDllVersion")) validate();
  }

 private:
  // Null where the library or the function is not there. The client may be installed at any time, so a
  // missing library is looked for again.
  template <typename Function>
  Function Find(const char* name) {
    if (!library_.valid()) library_ = LoadClientLibrary();
    if (!library_.valid()) return nullptr;
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library_.get(), name)));
  }

  UniqueLibrary library_;
};

}  // namespace

std::unique_ptr<ContinuousBackup> MakeWin32ContinuousBackup() {
  return std::make_unique<Win32ContinuousBackup>();
}

}  // namespace ondura
