#include "com/com_variant.h"

#include <cstring>

namespace ondura {

namespace {

// The VARIANT that an argument refers to: script variables come as a reference to one.
VARIANT& Target(VARIANT* argument) {
  RequirePointer(argument);
  if (V_VT(argument) != (VT_BYREF | VT_VARIANT)) return *argument;
  RequirePointer(V_VARIANTREF(argument));
  return *V_VARIANTREF(argument);
}

std::size_t SizeOfPlain(VARTYPE type) {
  switch (type) {
    case VT_I1:
    case VT_UI1:
      return 1;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
      return 2;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
    case VT_ERROR:
      return 4;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
      return 8;
    default:
      throw ComError{DISP_E_TYPEMISMATCH};
  }
}

// Into a variable of the caller that has a type of its own.
void AssignTyped(const VARIANT& reference, Variant& value) {
  const auto type = static_cast<VARTYPE>(V_VT(&reference) & ~VT_BYREF);
  void* const place = V_BYREF(&reference);
  RequirePointer(place);
  if ((type & VT_ARRAY) == 0) value.ConvertTo(type);
  if (V_VT(value.get()) != type) throw ComError{DISP_E_TYPEMISMATCH};
  if (type == VT_BSTR) {
    SysFreeString(*V_BSTRREF(&reference));
    *V_BSTRREF(&reference) = V_BSTR(value.get());
  } else if ((type & VT_ARRAY) != 0) {
    Check(SafeArrayDestroy(*V_ARRAYREF(&reference)));
    *V_ARRAYREF(&reference) = V_ARRAY(value.get());
  } else {
    std::memcpy(place, &V_BYREF(value.get()), SizeOfPlain(type));
  }
  V_VT(value.get()) = VT_EMPTY;
}

}  // namespace

Variant::Variant(const std::vector<std::string>& texts, VARTYPE element) : Variant() {
  SAFEARRAY* const array = SafeArrayCreateVector(element, 0, static_cast<ULONG>(texts.size()));
  if (array == nullptr) throw ComError{E_OUTOFMEMORY};
  V_VT(&value_) = static_cast<VARTYPE>(VT_ARRAY | element);
  V_ARRAY(&value_) = array;
  for (LONG index = 0; const std::string& text : texts) {
    Variant item{std::string_view{text}};
    void* const source = element == VT_BSTR ? static_cast<void*>(V_BSTR(item.get())) : item.get();
    Check(SafeArrayPutElement(array, &index, source));
    ++index;
  }
}

Variant::Variant(const std::vector<std::uint8_t>& bytes) : Variant() {
  SAFEARRAY* const array = SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(bytes.size()));
  if (array == nullptr) throw ComError{E_OUTOFMEMORY};
  V_VT(&value_) = VT_ARRAY | VT_VARIANT;
  V_ARRAY(&value_) = array;
  for (LONG index = 0; const std::uint8_t byte : bytes) {
    Variant item;
    V_VT(item.get()) = VT_UI1;
    V_UI1(item.get()) = byte;
    Check(SafeArrayPutElement(array, &index, item.get()));
    ++index;
  }
}

void Variant::ConvertTo(VARTYPE type) {
  Check(ConversionResult(VariantChangeType(&value_, &value_, 0, type)));
}

void Variant::MoveTo(VARIANT& target) {
  Check(VariantClear(&target));
  target = value_;
  V_VT(&value_) = VT_EMPTY;
}

void CopyOf(VARIANT* argument, Variant& copy) {
  RequirePointer(argument);
  // Automation follows references without a look.
  for (const VARIANT* at = argument; (V_VT(at) & VT_BYREF) != 0; at = V_VARIANTREF(at)) {
    RequirePointer(V_BYREF(at));
    if (V_VT(at) != (VT_BYREF | VT_VARIANT)) break;
  }
  Check(ConversionResult(VariantCopyInd(copy.get(), argument)));
}

std::int32_t Int32Of(VARIANT* argument) {
  Variant value;
  CopyOf(argument, value);
  value.ConvertTo(VT_I4);
  return V_I4(value.get());
}

std::string TextOf(VARIANT* argument) {
  Variant value;
  CopyOf(argument, value);
  value.ConvertTo(VT_BSTR);
  return TextOf(V_BSTR(value.get()));
}

void Assign(VARIANT* argument, Variant&& value) {
  VARIANT& target = Target(argument);
  if ((V_VT(&target) & VT_BYREF) != 0) {
    AssignTyped(target, value);
  } else {
    value.MoveTo(target);
  }
}

}  // namespace ondura
