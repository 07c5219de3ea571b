#include "ComponentObject.h"

#include <objbase.h>
#include <oleauto.h>

#include <optional>
#include <vector>

#include "HostError.h"
#include "machines/win32/text_edges.h"
#include "machines/win32/windows_api.h"

namespace ondura {

namespace {

constexpr std::string_view kProgIdPrefix = "OnduraEService.";

std::string FailureText(std::string_view what, HRESULT result) {
  return std::string{what} + " failed: " + SystemText(static_cast<unsigned long>(result));
}

// What a call left behind beside its code.
class ExceptionInfo {
 public:
  ExceptionInfo() = default;
  ~ExceptionInfo() {
    SysFreeString(info_.bstrSource);
    SysFreeString(info_.bstrDescription);
    SysFreeString(info_.bstrHelpFile);
  }
  ExceptionInfo(const ExceptionInfo&) = delete;
  ExceptionInfo& operator=(const ExceptionInfo&) = delete;

  EXCEPINFO* Receive() { return &info_; }
  [[nodiscard]] std::string Description() const {
    return info_.bstrDescription == nullptr ? std::string{} : FromWide(info_.bstrDescription);
  }

 private:
  EXCEPINFO info_{};
};

// Arguments of a call by name; the platform wants the last one first.
class Arguments {
 public:
  explicit Arguments(std::initializer_list<std::string_view> texts) : values_(texts.size()) {
    auto place = values_.rbegin();
    for (const std::string_view text : texts) {
      const std::wstring wide = ToWide(text);
      place->vt = VT_BSTR;
      place->bstrVal = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
      ++place;
    }
    parameters_.rgvarg = values_.data();
    parameters_.cArgs = static_cast<UINT>(values_.size());
  }
  ~Arguments() {
    for (VARIANTARG& value : values_) VariantClear(&value);
  }
  Arguments(const Arguments&) = delete;
  Arguments& operator=(const Arguments&) = delete;

  DISPPARAMS* parameters() { return &parameters_; }

 private:
  std::vector<VARIANTARG> values_;
  DISPPARAMS parameters_{};
};

HRESULT FindMember(IDispatch& object, std::string_view operation, DISPID& member) {
  std::wstring name = ToWide(operation);
  wchar_t* names[] = {name.data()};
  return object.GetIDsOfNames(IID_NULL, static_cast<wchar_t**>(names), 1, LOCALE_NEUTRAL, &member);
}

}  // namespace

Apartment::Apartment() {
  const HRESULT result = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  if (FAILED(result)) throw HostError(FailureText("CoInitializeEx", result));
}

Apartment::~Apartment() { CoUninitialize(); }

ComponentObject::ComponentObject(std::string_view class_name)
    : name_(std::string{kProgIdPrefix} + std::string{class_name}) {
  CLSID class_id{};
  HRESULT result = CLSIDFromProgID(ToWide(name_).c_str(), &class_id);
  if (SUCCEEDED(result)) {
    result = CoCreateInstance(class_id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                              reinterpret_cast<void**>(&object_));
  }
  if (FAILED(result)) {
    throw HostError(FailureText("making " + name_, result) +
                        ". Register the component with `regsvr32 OnduraEService.dll`.",
                    kExitUsage);
  }
}

ComponentObject::~ComponentObject() { object_->Release(); }

bool ComponentObject::Has(std::string_view operation) const {
  DISPID member = DISPID_UNKNOWN;
  return SUCCEEDED(FindMember(*object_, operation, member));
}

void ComponentObject::Call(std::string_view operation, std::initializer_list<std::string_view> texts) const {
  const std::string what = name_ + "." + std::string{operation};
  DISPID member = DISPID_UNKNOWN;
  HRESULT result = FindMember(*object_, operation, member);
  if (FAILED(result)) throw HostError(FailureText(what, result));
  Arguments arguments(texts);
  ExceptionInfo exception;
  result = object_->Invoke(member, IID_NULL, LOCALE_NEUTRAL, DISPATCH_METHOD, arguments.parameters(), nullptr,
                           exception.Receive(), nullptr);
  if (result == DISP_E_EXCEPTION) throw HostError(what + " failed: " + exception.Description());
  if (FAILED(result)) throw HostError(FailureText(what, result));
}

}  // namespace ondura
