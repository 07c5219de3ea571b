#include <array>
#include <string>

#include "platform/win32/handles.h"
#include "platform/win32/ports.h"

namespace ondura {

namespace {

constexpr const wchar_t* kLibraryName = L"OnduraERealTime.dll";

constexpr DWORD kPathCharacters = 1024;

using PostStatus = void(WINAPI*)(LONG state);
using ValidateVersion = void(WINAPI*)();

// The folder, with its backslash, of a module of this process; null is the program itself.
std::wstring FolderOf(HMODULE module) {
  std::array<wchar_t, kPathCharacters> path{};
  const DWORD length = GetModuleFileNameW(module, path.data(), kPathCharacters);
  const std::wstring_view whole{path.data(), length < kPathCharacters ? length : 0};
  return std::wstring{whole.substr(0, whole.rfind(L'\\') + 1)};
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
    const std::wstring path = FolderOf(module) + kLibraryName;
    UniqueLibrary library{LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH)};
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
