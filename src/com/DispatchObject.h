#pragma once

#include <atomic>
#include <new>
#include <utility>

#include "com/Module.h"
#include "com/com_error.h"
#include "com/com_text.h"
#include "com/interfaces.h"

namespace ondura {

inline void Give(BSTR* target, std::string_view text) { *target = Bstr(text).release(); }
inline void Give(VARIANT_BOOL* target, bool value) { *target = value ? VARIANT_TRUE : VARIANT_FALSE; }
template <class Number>
void Give(Number* target, Number value) {
  *target = value;
}

// The part that all objects of the type library have in common: life, IDispatch through the type library,
// and the guard around every method. Release by the last holder deletes the object.
template <class Interface>
class DispatchObject : public Interface, public ISupportErrorInfo {
 public:
  DispatchObject() = default;
  DispatchObject(const DispatchObject&) = delete;
  DispatchObject& operator=(const DispatchObject&) = delete;

  STDMETHODIMP QueryInterface(REFIID id, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    // NOLINTNEXTLINE(misc-redundant-expression)
    if (id == __uuidof(IUnknown) || id == __uuidof(IDispatch) || id == __uuidof(Interface)) {
      *object = static_cast<Interface*>(this);
    } else if (id == __uuidof(ISupportErrorInfo)) {
      *object = static_cast<ISupportErrorInfo*>(this);
    } else {
      return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
  }

  STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }

  STDMETHODIMP_(ULONG) Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID id) override {
    return id == __uuidof(Interface) ? S_OK : S_FALSE;
  }

  STDMETHODIMP GetTypeInfoCount(UINT* count) override {
    if (count == nullptr) return E_POINTER;
    *count = 1;
    return S_OK;
  }

  STDMETHODIMP GetTypeInfo(UINT index, LCID, ITypeInfo** info) override {
    if (info == nullptr) return E_POINTER;
    *info = nullptr;
    if (index != 0) return DISP_E_BADINDEX;
    return Guarded([&] { *info = TypeInfo().Detach(); });
  }

  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
    return Guarded([&] { Check(TypeInfo()->GetIDsOfNames(names, count, ids)); });
  }

  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                      EXCEPINFO* exception, UINT* bad_argument) override {
    HRESULT code = S_OK;
    const HRESULT guarded = Guarded([&] {
      code = TypeInfo()->Invoke(static_cast<Interface*>(this), id, flags, arguments, result, exception,
                                bad_argument);
    });
    return FAILED(guarded) ? guarded : ResultOfInvoke(code, exception);
  }

 protected:
  virtual ~DispatchObject() = default;

  // The component that all objects share; only inside a method's work.
  [[nodiscard]] Component& component() const { return Module::Get().shared().component(); }

  // A method without a result.
  template <class Work>
  HRESULT Run(const Work& work) noexcept {
    return Guarded([&] {
      const CallGate::Hold hold(Module::Get().shared().gate());
      work();
    });
  }

  // A method whose result goes into `*result`.
  template <class Result, class Work>
  HRESULT Answer(Result* result, const Work& work) noexcept {
    return Run([&] {
      RequirePointer(result);
      *result = Result{};
      Give(result, work());
    });
  }

  // A method that answers with an empty VARIANT.
  template <class Work>
  HRESULT AnswerNothing(VARIANT* result, const Work& work) noexcept {
    return Run([&] {
      RequirePointer(result);
      VariantInit(result);
      work();
    });
  }

 private:
  template <class Work>
  static HRESULT Guarded(const Work& work) noexcept {
    try {
      work();
      return S_OK;
    } catch (...) {
      return CodeOfException();
    }
  }

  static Microsoft::WRL::ComPtr<ITypeInfo> TypeInfo() {
    return Module::Get().TypeInfoOf(__uuidof(Interface));
  }

  ModuleHold hold_;
  std::atomic<ULONG> references_{1};
};

}  // namespace ondura
