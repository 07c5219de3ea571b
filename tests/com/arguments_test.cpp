#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <stdexcept>
#include <tuple>
#include <vector>

#include "com/com_error.h"
#include "com_client.h"

namespace ondura_client {
namespace {

class ArgumentsTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(controller_) << "the component is not registered"; }

  Apartment apartment_;
  ComPtr<IController> controller_ = Create<IController>(__uuidof(Controller));
};

TEST_F(ArgumentsTest, AResultReachesTheCallersVariableInItsOwnType) {
  long as_long = 7;
  double as_double = 7;
  short as_short = 7;
  unsigned char as_byte = 7;
  BSTR as_text = SysAllocString(L"seven");
  Value inner;
  using Row = std::tuple<const char*, VARTYPE, void*, std::function<bool()>>;
  const Row rows[] = {
      {"a long", VT_BYREF | VT_I4, &as_long, [&] { return as_long == 0; }},
      {"a double", VT_BYREF | VT_R8, &as_double, [&] { return as_double == 0; }},
      {"a short", VT_BYREF | VT_I2, &as_short, [&] { return as_short == 0; }},
      {"a byte", VT_BYREF | VT_UI1, &as_byte, [&] { return as_byte == 0; }},
      {"a text", VT_BYREF | VT_BSTR, &as_text, [&] { return std::wstring{as_text} == L"0"; }},
      {"a script's variable", VT_BYREF | VT_VARIANT, &inner,
       [&] { return V_VT(&inner) == VT_BOOL && V_BOOL(&inner) == VARIANT_FALSE; }},
  };
  for (const auto& [story, type, place, is_zero] : rows) {
    VARIANT number{};
    V_VT(&number) = type;
    V_BYREF(&number) = place;
    EXPECT_EQ(controller_->ReadScheduleStatusFile(&number), S_OK) << story;
    EXPECT_TRUE(is_zero()) << story;
  }
  SysFreeString(as_text);
}

TEST_F(ArgumentsTest, AResultFileThatIsMissingLeavesTheCallersNumber) {
  long as_long = 7;
  Value found;
  VARIANT number{};
  V_VT(&number) = VT_BYREF | VT_I4;
  V_I4REF(&number) = &as_long;
  EXPECT_EQ(controller_->ResdDLLOutputFile(&found, &number), S_OK);
  EXPECT_EQ(V_BOOL(&found), VARIANT_FALSE);
  EXPECT_EQ(as_long, 7);
}

TEST_F(ArgumentsTest, AVariableThatCanNotHoldTheResultIsAMismatch) {
  VARIANT number{};
  IDispatch* object = nullptr;
  V_VT(&number) = VT_BYREF | VT_DISPATCH;
  V_DISPATCHREF(&number) = &object;
  EXPECT_EQ(controller_->ReadScheduleStatusFile(&number), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(controller_->ResdDLLOutputFile(nullptr, nullptr), E_POINTER);
  EXPECT_EQ(controller_->GetSystemTime(nullptr), E_POINTER);
  VARIANT nowhere{};
  const VARTYPE types[] = {VT_VARIANT, VT_BSTR, VT_ARRAY | VT_BSTR};
  for (const VARTYPE type : types) {
    V_VT(&nowhere) = static_cast<VARTYPE>(VT_BYREF | type);
    V_BYREF(&nowhere) = nullptr;
    EXPECT_EQ(controller_->RemoveDuplicate(&nowhere), E_POINTER) << type;
    EXPECT_EQ(controller_->ReadScheduleStatusFile(&nowhere), E_POINTER) << type;
  }
}

// A list as a script holds it.
void MakeList(Value& value, std::initializer_list<const wchar_t*> texts, VARTYPE element) {
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

TEST_F(ArgumentsTest, AListKeepsTheFormInWhichItCame) {
  for (const VARTYPE element : {VT_BSTR, VT_VARIANT}) {
    Value list;
    MakeList(list, {L"C:\\\u00e9", L"c:\\\u00c9\\b", L"D:\\x"}, element);
    EXPECT_EQ(controller_->RemoveDuplicate(&list), S_OK);
    EXPECT_EQ(V_VT(&list), VT_ARRAY | element);
    EXPECT_EQ(Joined(V_ARRAY(&list), element), L"C:\\\u00e9;D:\\x;");

    Value declared;
    MakeList(declared, {L"C:\\a", L"C:\\a"}, element);
    VARIANT reference{};
    V_VT(&reference) = static_cast<VARTYPE>(VT_BYREF | VT_ARRAY | element);
    V_ARRAYREF(&reference) = &V_ARRAY(&declared);
    EXPECT_EQ(controller_->RemoveDuplicate(&reference), S_OK);
    EXPECT_EQ(Joined(V_ARRAY(&declared), element), L"C:\\a;");
  }
  Value number;
  V_VT(&number) = VT_I4;
  EXPECT_EQ(controller_->RemoveDuplicate(&number), DISP_E_TYPEMISMATCH);
}

// A collection as a language makes it: its members are found by name.
class TextCollection : public IDispatch {
 public:
  std::vector<std::wstring> texts;

  STDMETHODIMP QueryInterface(REFIID, void** object) override {
    *object = this;
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
    const std::wstring members[] = {L"Count", L"Item", L"Add", L"Remove"};
    for (DISPID id = 0; id < 4; ++id) {
      if (members[id] == *names) *ids = id;
    }
    return S_OK;
  }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* given, VARIANT* result, EXCEPINFO*,
                      UINT*) override {
    switch (id) {
      case 0:
        V_VT(result) = VT_I4;
        V_I4(result) = static_cast<LONG>(texts.size());
        break;
      case 1:
        V_VT(result) = VT_BSTR;
        V_BSTR(result) = SysAllocString(texts.at(static_cast<std::size_t>(V_I4(given->rgvarg)) - 1).c_str());
        break;
      case 2:
        texts.emplace_back(V_BSTR(given->rgvarg));
        break;
      default:
        texts.erase(texts.begin() + V_I4(given->rgvarg) - 1);
    }
    return S_OK;
  }
};

TEST_F(ArgumentsTest, ACollectionOfTheCallersLanguageIsFilledAnew) {
  TextCollection collection;
  collection.texts = {L"C:\\a", L"C:\\a\\b", L"D:\\x"};
  VARIANT list{};
  V_VT(&list) = VT_DISPATCH;
  V_DISPATCH(&list) = &collection;
  EXPECT_EQ(controller_->RemoveDuplicate(&list), S_OK);
  EXPECT_EQ(collection.texts, (std::vector<std::wstring>{L"C:\\a", L"D:\\x"}));
}

TEST_F(ArgumentsTest, AFailedConversionIsOneCodeToALateBoundCaller) {
  const auto codec = Create<IDispatch>(__uuidof(cBase64));
  const auto call = [&](const wchar_t* member, VARIANT& argument) {
    std::wstring name = member;
    LPOLESTR names = name.data();
    DISPID id = DISPID_UNKNOWN;
    codec->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id);
    DISPPARAMS given{&argument, nullptr, 1, 0};
    Value result;
    return codec->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &given, &result, nullptr,
                         nullptr);
  };
  VARIANT object{};
  V_VT(&object) = VT_DISPATCH;
  V_DISPATCH(&object) = codec.Get();
  EXPECT_EQ(call(L"encode", object), DISP_E_TYPEMISMATCH);
  VARIANT huge{};
  V_VT(&huge) = VT_R8;
  V_R8(&huge) = 1e12;
  EXPECT_EQ(call(L"Power2", huge), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(call(L"power2", huge), DISP_E_TYPEMISMATCH) << "names have no letter case";
}

// Whatever the work after a method throws, the caller gets a code.
TEST(ExceptionTest, NoneCrossesTheEdge) {
  using Row = std::tuple<std::function<void()>, HRESULT, const wchar_t*>;
  const Row rows[] = {
      {[] { throw ondura::ComError{DISP_E_TYPEMISMATCH}; }, DISP_E_TYPEMISMATCH, nullptr},
      {[] { throw std::bad_alloc(); }, E_OUTOFMEMORY, nullptr},
      {[] { throw std::runtime_error("out of luck"); }, E_FAIL, L"out of luck"},
      {[] { throw 5; }, E_UNEXPECTED, nullptr},
  };
  for (const auto& [work, want, text] : rows) {
    SetErrorInfo(0, nullptr);
    HRESULT code = S_OK;
    try {
      work();
    } catch (...) {
      code = ondura::CodeOfException();
    }
    EXPECT_EQ(code, want);
    ComPtr<IErrorInfo> info;
    EXPECT_EQ(GetErrorInfo(0, &info), text == nullptr ? S_FALSE : S_OK);
    Text description;
    if (info) info->GetDescription(&description);
    EXPECT_EQ(description.str(), text == nullptr ? L"" : text);
  }
}

}  // namespace
}  // namespace ondura_client
