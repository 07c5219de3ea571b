#include <wrl/client.h>

#include <algorithm>

#include "com/ClassFactory.h"
#include "com/Module.h"
#include "com/com_error.h"
#include "com/registration.h"

namespace {

// What a way into the library answers, whatever its work meets.
template <class Work>
HRESULT Guarded(const Work& work) noexcept {
  try {
    return work();
  } catch (...) {
    return ondura::CodeOfException();
  }
}

}  // namespace

STDAPI DllCanUnloadNow() { return ondura::Module::Get().LetGo() ? S_OK : S_FALSE; }

STDAPI DllGetClassObject(REFCLSID class_id, REFIID id, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  const auto classes = ondura::PublicClasses();
  const auto found =
      std::ranges::find_if(classes, [&](const ondura::PublicClass& made) { return *made.id == class_id; });
  if (found == classes.end()) return CLASS_E_CLASSNOTAVAILABLE;
  return Guarded([&] {
    Microsoft::WRL::ComPtr<IClassFactory> factory;
    *factory.GetAddressOf() = new ondura::ClassFactory(*found);
    return factory->QueryInterface(id, object);
  });
}

STDAPI DllRegisterServer() {
  return Guarded([] {
    ondura::Register();
    return S_OK;
  });
}

STDAPI DllUnregisterServer() {
  return Guarded([] {
    ondura::Unregister();
    return S_OK;
  });
}
