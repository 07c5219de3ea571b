#include "com/registration.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "com/Module.h"
#include "com/classes.h"
#include "com/com_error.h"
#include "com/interfaces.h"

// Missing in the compiler's headers.
STDAPI RegisterTypeLibForUser(ITypeLib* library, OLECHAR* file, OLECHAR* help_folder);
STDAPI UnRegisterTypeLibForUser(REFGUID id, WORD major, WORD minor, LCID language, SYSKIND word_size);

namespace ondura {

namespace {

constexpr const wchar_t* kClassesKey = L"Software\\Classes";

// The type library in this file, with its identity.
class OwnLibrary {
 public:
  OwnLibrary() {
    Check(LoadTypeLibEx(ModulePath().c_str(), REGKIND_NONE, library_.GetAddressOf()));
    Check(library_->GetLibAttr(&attributes_));
  }
  ~OwnLibrary() { library_->ReleaseTLibAttr(attributes_); }
  OwnLibrary(const OwnLibrary&) = delete;
  OwnLibrary& operator=(const OwnLibrary&) = delete;

  [[nodiscard]] ITypeLib* get() const { return library_.Get(); }
  [[nodiscard]] const TLIBATTR& attributes() const { return *attributes_; }

 private:
  Microsoft::WRL::ComPtr<ITypeLib> library_;
  TLIBATTR* attributes_ = nullptr;
};

// An open key of the registry.
class Key {
 public:
  Key() = default;
  ~Key() {
    if (key_ != nullptr) RegCloseKey(key_);
  }
  Key(const Key&) = delete;
  Key& operator=(const Key&) = delete;

  [[nodiscard]] HKEY get() const { return key_; }

  bool Open(HKEY root, const std::wstring& path, REGSAM access) {
    return RegOpenKeyExW(root, path.c_str(), 0, access, &key_) == ERROR_SUCCESS;
  }

  void Create(HKEY root, const std::wstring& path) {
    Check(HRESULT_FROM_WIN32(static_cast<DWORD>(
        RegCreateKeyExW(root, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key_, nullptr))));
  }

 private:
  HKEY key_ = nullptr;
};

std::wstring TextOfId(REFGUID id) {
  std::array<wchar_t, 40> text{};
  StringFromGUID2(id, text.data(), static_cast<int>(text.size()));
  return text.data();
}

std::wstring ProgIdOf(const PublicClass& made) { return std::wstring{L"OnduraEService."} + made.name; }
std::wstring ClassKeyOf(const PublicClass& made) { return L"CLSID\\" + TextOfId(*made.id); }

void SetValue(HKEY root, const std::wstring& path, const wchar_t* name, const std::wstring& value) {
  Key key;
  key.Create(root, path);
  Check(HRESULT_FROM_WIN32(static_cast<DWORD>(
      RegSetValueExW(key.get(), name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                     static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t))))));
}

void RegisterClass(HKEY classes, const PublicClass& made, const std::wstring& file, REFGUID library) {
  const std::wstring key = ClassKeyOf(made);
  const std::wstring prog_id = ProgIdOf(made);
  SetValue(classes, key, nullptr, prog_id);
  SetValue(classes, key + L"\\InprocServer32", nullptr, file);
  SetValue(classes, key + L"\\InprocServer32", L"ThreadingModel", L"Apartment");
  SetValue(classes, key + L"\\ProgID", nullptr, prog_id);
  SetValue(classes, key + L"\\TypeLib", nullptr, TextOfId(library));
  SetValue(classes, key + L"\\Version", nullptr, L"1.0");
  SetValue(classes, prog_id, nullptr, prog_id);
  SetValue(classes, prog_id + L"\\CLSID", nullptr, TextOfId(*made.id));
}

using RegisterLibrary = HRESULT(STDAPICALLTYPE*)(ITypeLib*, OLECHAR*, OLECHAR*);

void RegisterUnder(HKEY root, RegisterLibrary register_library) {
  Key classes;
  classes.Create(root, kClassesKey);
  const OwnLibrary library;
  std::wstring file = ModulePath();
  for (const PublicClass& made : PublicClasses()) {
    RegisterClass(classes.get(), made, file, library.attributes().guid);
  }
  Check(register_library(library.get(), file.data(), nullptr));
}

void UnregisterUnder(HKEY root) {
  Key classes;
  if (!classes.Open(root, kClassesKey, KEY_ALL_ACCESS)) return;
  for (const PublicClass& made : PublicClasses()) {
    RegDeleteTreeW(classes.get(), ClassKeyOf(made).c_str());
    RegDeleteTreeW(classes.get(), ProgIdOf(made).c_str());
  }
}

bool IsRegistered(const PublicClass& made) {
  Key key;
  return key.Open(HKEY_CLASSES_ROOT, ClassKeyOf(made), KEY_READ);
}

}  // namespace

void Register() {
  try {
    RegisterUnder(HKEY_LOCAL_MACHINE, RegisterTypeLib);
  } catch (const ComError& error) {
    UnregisterUnder(HKEY_LOCAL_MACHINE);
    // Any other failure would leave a registration that only this user has, and nobody told.
    if (error.code != E_ACCESSDENIED && error.code != TYPE_E_REGISTRYACCESS) throw;
    RegisterUnder(HKEY_CURRENT_USER, RegisterTypeLibForUser);
  }
}

void Unregister() {
  const OwnLibrary library;
  const TLIBATTR& of = library.attributes();
  // Each fails where the library is not registered there, which is as good.
  UnRegisterTypeLib(of.guid, of.wMajorVerNum, of.wMinorVerNum, of.lcid, of.syskind);
  UnRegisterTypeLibForUser(of.guid, of.wMajorVerNum, of.wMinorVerNum, of.lcid, of.syskind);
  UnregisterUnder(HKEY_LOCAL_MACHINE);
  UnregisterUnder(HKEY_CURRENT_USER);
  if (std::ranges::any_of(PublicClasses(), IsRegistered)) throw ComError{E_ACCESSDENIED};
}

}  // namespace ondura
