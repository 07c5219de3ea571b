#include <wrl/client.h>

#include "com/com_variant.h"

namespace ondura {

namespace {

// A collection object of the caller's language, by its members' names.
class Collection {
 public:
  // Null is no collection.
  explicit Collection(IDispatch* object) : object_(object) {
    if (object == nullptr) throw ComError{DISP_E_TYPEMISMATCH};
  }

  std::int32_t Count() {
    Variant count;
    Call(L"Count", DISPATCH_METHOD | DISPATCH_PROPERTYGET, nullptr, count.get());
    return Int32Of(count.get());
  }

  std::string Item(std::int32_t number) {
    Variant index(number);
    Variant item;
    Call(L"Item", DISPATCH_METHOD | DISPATCH_PROPERTYGET, index.get(), item.get());
    item.ConvertTo(VT_BSTR);
    return TextOf(V_BSTR(item.get()));
  }

  void Add(std::string_view text) {
    Variant item(text);
    Call(L"Add", DISPATCH_METHOD, item.get(), nullptr);
  }

  void RemoveFirst() {
    Variant index(std::int32_t{1});
    Call(L"Remove", DISPATCH_METHOD, index.get(), nullptr);
  }

 private:
  void Call(const wchar_t* member, WORD flags, VARIANT* argument, VARIANT* result) {
    const std::wstring name = member;
    auto* names = const_cast<LPOLESTR>(name.c_str());
    DISPID id = DISPID_UNKNOWN;
    if (FAILED(object_->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id))) {
      throw ComError{DISP_E_TYPEMISMATCH};
    }
    DISPPARAMS arguments{argument, nullptr, argument == nullptr ? 0U : 1U, 0};
    Check(object_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &arguments, result, nullptr, nullptr));
  }

  Microsoft::WRL::ComPtr<IDispatch> object_;
};

std::vector<std::string> TextsOf(SAFEARRAY* array, VARTYPE element) {
  LONG low = 0;
  LONG high = -1;
  if (array == nullptr) return {};
  if (SafeArrayGetDim(array) != 1) throw ComError{DISP_E_TYPEMISMATCH};
  Check(SafeArrayGetLBound(array, 1, &low));
  Check(SafeArrayGetUBound(array, 1, &high));
  std::vector<std::string> texts;
  for (LONG index = low; index <= high; ++index) {
    Variant item;
    if (element == VT_VARIANT) {
      Check(SafeArrayGetElement(array, &index, item.get()));
    } else {
      Check(SafeArrayGetElement(array, &index, &V_BSTR(item.get())));
      V_VT(item.get()) = VT_BSTR;
    }
    item.ConvertTo(VT_BSTR);
    texts.push_back(TextOf(V_BSTR(item.get())));
  }
  return texts;
}

std::vector<std::string> TextsOf(Collection collection) {
  std::vector<std::string> texts;
  const std::int32_t count = collection.Count();
  for (std::int32_t number = 1; number <= count; ++number) texts.push_back(collection.Item(number));
  return texts;
}

void Refill(Collection collection, const std::vector<std::string>& texts) {
  for (std::int32_t left = collection.Count(); left > 0; --left) collection.RemoveFirst();
  for (const std::string& text : texts) collection.Add(text);
}

}  // namespace

std::vector<std::string> ListOf(VARIANT* argument) {
  Variant copy;
  CopyOf(argument, copy);
  switch (V_VT(copy.get())) {
    case VT_EMPTY:
      return {};
    case VT_DISPATCH:
      return TextsOf(Collection(V_DISPATCH(copy.get())));
    case VT_ARRAY | VT_BSTR:
      return TextsOf(V_ARRAY(copy.get()), VT_BSTR);
    case VT_ARRAY | VT_VARIANT:
      return TextsOf(V_ARRAY(copy.get()), VT_VARIANT);
    default:
      throw ComError{DISP_E_TYPEMISMATCH};
  }
}

void AssignList(VARIANT* argument, const std::vector<std::string>& texts) {
  Variant now;
  CopyOf(argument, now);
  if (V_VT(now.get()) == VT_DISPATCH) {
    Refill(Collection(V_DISPATCH(now.get())), texts);
    return;
  }
  Assign(argument, Variant(texts, V_VT(now.get()) == (VT_ARRAY | VT_BSTR) ? VT_BSTR : VT_VARIANT));
}

}  // namespace ondura
