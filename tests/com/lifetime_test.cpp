#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <vector>

#include "com_client.h"
#include "support/open_handles.h"

namespace ondura_client {
namespace {

constexpr wchar_t kLibrary[] = L"OnduraEService.dll";

struct Class {
  const CLSID& id;
  const wchar_t* member;  // asked for by name; null where the class has none
};

const Class kClasses[] = {
    {__uuidof(Controller), L"GetSystemTime"}, {__uuidof(Scheduler), L"ConvertToDate"},
    {__uuidof(Transfer), L"setLindex"},       {__uuidof(Options), L"WriteTrace"},
    {__uuidof(clsSystemState), nullptr},      {__uuidof(CDummyCall), L"GetTempFolderPath"},
    {__uuidof(cBase64), L"EncodedMessage"},   {__uuidof(OnduraTime), nullptr},
};

// Calls a member without arguments, or asks for the id of the others.
void Use(IDispatch& object, const wchar_t* member) {
  std::wstring name = member;
  LPOLESTR names = name.data();
  DISPID id = DISPID_UNKNOWN;
  ASSERT_EQ(object.GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id), S_OK);
  DISPPARAMS none{};
  Value result;
  object.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &none, &result, nullptr, nullptr);
}

// Bytes that the process has allocated, in all its heaps.
std::size_t AllocatedBytes() {
  std::vector<HANDLE> heaps(64);
  heaps.resize(GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data()));
  std::size_t bytes = 0;
  for (HANDLE heap : heaps) {
    PROCESS_HEAP_ENTRY entry{};
    while (HeapWalk(heap, &entry)) {
      if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) bytes += entry.cbData;
    }
  }
  return bytes;
}

TEST(LifetimeTest, TenThousandObjectsOfEachClassLeaveNothing) {
  const Apartment apartment;
  const auto rounds = [](const Class& of, int count) {
    for (int i = 0; i < count; ++i) {
      const auto object = Create<IDispatch>(of.id);
      ASSERT_TRUE(object);
      if (of.member != nullptr) Use(*object.Get(), of.member);
    }
  };
  for (const Class& of : kClasses) {
    rounds(of, 20);  // what the system itself keeps after the first use
    const std::size_t bytes = AllocatedBytes();
    const std::size_t handles = ondura::OpenHandles();
    ASSERT_GT(handles, 0U) << "they can't be counted here";
    rounds(of, 10'000);
    EXPECT_LE(AllocatedBytes(), bytes + 4096) << of.member;
    EXPECT_EQ(ondura::OpenHandles(), handles) << of.member;
  }
  const HMODULE library = GetModuleHandleW(kLibrary);
  ASSERT_NE(library, nullptr);
  const auto can_unload = reinterpret_cast<HRESULT(STDAPICALLTYPE*)()>(
      reinterpret_cast<void*>(GetProcAddress(library, "DllCanUnloadNow")));
  EXPECT_EQ(can_unload(), S_OK);
  const auto held = Create<IDispatch>(__uuidof(OnduraTime));
  EXPECT_EQ(can_unload(), S_FALSE);
}

TEST(LifetimeTest, TheStateOutlivesTheLastObjectUntilTheLibraryLeavesTheProcess) {
  const Apartment apartment;
  const auto subject = [] {
    Text text;
    Create<IController>(__uuidof(Controller))->get_MailSubject(&text);
    return text.str();
  };
  Create<IController>(__uuidof(Controller))->put_MailSubject(Text(L"kept"));
  EXPECT_EQ(subject(), L"kept");
  for (int round = 0; round < 2; ++round) CoFreeUnusedLibrariesEx(0, 0);
  EXPECT_EQ(GetModuleHandleW(kLibrary), nullptr);
  EXPECT_EQ(subject(), L"");
}

TEST(LifetimeTest, AControllerAnswersWithinTwentyMilliseconds) {
  const Apartment apartment;
  const auto one = [] {
    const auto begin = std::chrono::steady_clock::now();
    Text time;
    Create<IController>(__uuidof(Controller))->GetSystemTime(&time);
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
  };
  ASSERT_TRUE(Create<IController>(__uuidof(Controller)));
  one();
  std::vector<double> taken_ms(21);
  std::ranges::generate(taken_ms, one);
  std::ranges::sort(taken_ms);
  RecordProperty("median_ms", std::to_string(taken_ms[10]));
  EXPECT_LT(taken_ms[10], 20);
}

}  // namespace
}  // namespace ondura_client
