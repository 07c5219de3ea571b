#include "com/ClassFactory.h"

#include <wrl/client.h>

#include "com/Module.h"
#include "com/com_error.h"

namespace ondura {

ClassFactory::ClassFactory(const PublicClass& made) : made_(made) { Module::Get().Lock(true); }

ClassFactory::~ClassFactory() { Module::Get().Lock(false); }

STDMETHODIMP ClassFactory::QueryInterface(REFIID id, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (id != __uuidof(IUnknown) && id != __uuidof(IClassFactory)) return E_NOINTERFACE;
  *object = static_cast<IClassFactory*>(this);
  AddRef();
  return S_OK;
}

STDMETHODIMP_(ULONG) ClassFactory::AddRef() { return ++references_; }

STDMETHODIMP_(ULONG) ClassFactory::Release() {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

STDMETHODIMP ClassFactory::CreateInstance(IUnknown* outer, REFIID id, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (outer != nullptr) return CLASS_E_NOAGGREGATION;
  try {
    // Filled in place: Attach of this compiler's headers takes a reference of its own.
    Microsoft::WRL::ComPtr<IDispatch> made;
    *made.GetAddressOf() = made_.make();
    return made->QueryInterface(id, object);
  } catch (...) {
    return CodeOfException();
  }
}

STDMETHODIMP ClassFactory::LockServer(BOOL lock) {
  Module::Get().Lock(lock != FALSE);
  return S_OK;
}

}  // namespace ondura
