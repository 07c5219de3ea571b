#include "com/Module.h"

#include <utility>

#include "com/Locked.h"
#include "com/com_error.h"

namespace ondura {

namespace {

// The entry points of a library get no object: this is the one that they use.
constinit Module the_module;  // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

HMODULE OwnHandle() {
  HMODULE handle = nullptr;
  constexpr DWORD kByAddress =
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
  const void* const inside = &the_module;
  GetModuleHandleExW(kByAddress, static_cast<LPCWSTR>(inside), &handle);
  return handle;
}

}  // namespace

Module& Module::Get() { return the_module; }

void Module::Hold() {
  const Locked locked(lock_);
  if (shared_ == nullptr) shared_ = new SharedComponent;
  ++objects_;
}

void Module::Release() {
  const Locked locked(lock_);
  --objects_;
}

void Module::Lock(bool on) {
  const Locked locked(lock_);
  locks_ += on ? 1 : -1;
}

bool Module::LetGo() {
  const Locked locked(lock_);
  if (objects_ > 0 || locks_ > 0) return false;
  delete std::exchange(shared_, nullptr);
  if (library_ != nullptr) std::exchange(library_, nullptr)->Release();
  return true;
}

Microsoft::WRL::ComPtr<ITypeInfo> Module::TypeInfoOf(REFIID interface_id) {
  const Locked locked(lock_);
  if (library_ == nullptr) Check(LoadTypeLibEx(ModulePath().c_str(), REGKIND_NONE, &library_));
  Microsoft::WRL::ComPtr<ITypeInfo> info;
  Check(library_->GetTypeInfoOfGuid(interface_id, info.GetAddressOf()));
  return info;
}

std::wstring ModulePath() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(OwnHandle(), path.data(), static_cast<DWORD>(path.size()));
    if (length == 0) throw ComError{HRESULT_FROM_WIN32(GetLastError())};
    if (length < path.size()) {
      path.resize(length);
      return path;
    }
    path.resize(2 * path.size());
  }
}

}  // namespace ondura
