#include "com_client.h"

namespace ondura_client {

Value* MakeList(Value& value, std::initializer_list<const wchar_t*> texts, VARTYPE element) {
  V_VT(&value) = static_cast<VARTYPE>(VT_ARRAY | element);
  V_ARRAY(&value) = SafeArrayCreateVector(element, 0, static_cast<ULONG>(texts.size()));
  LONG index = 0;
  for (const wchar_t* text : texts) {
    Value item;
    V_VT(&item) = VT_BSTR;
    V_BSTR(&item) = SysAllocString(text);
    SafeArrayPutElement(V_ARRAY(&value), &index,
                        element == VT_BSTR ? static_cast<void*>(V_BSTR(&item)) : static_cast<void*>(&item));
    ++index;
  }
  return &value;
}

std::wstring Joined(SAFEARRAY* array, VARTYPE element) {
  std::wstring joined;
  LONG last = -1;
  SafeArrayGetUBound(array, 1, &last);
  for (LONG index = 0; index <= last; ++index) {
    Value item;
    if (element == VT_BSTR) {
      V_VT(&item) = VT_BSTR;
      SafeArrayGetElement(array, &index, &V_BSTR(&item));
    } else {
      SafeArrayGetElement(array, &index, &item);
    }
    joined.append(V_BSTR(&item), SysStringLen(V_BSTR(&item))).append(L";");
  }
  return joined;
}

}  // namespace ondura_client
