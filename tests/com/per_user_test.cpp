#include <gtest/gtest.h>

#include "com_client.h"

namespace ondura_client {
namespace {

constexpr wchar_t kClassKey[] = L"Software\\Classes\\OnduraEService.Controller\\CLSID";

bool HasKey(HKEY root, const wchar_t* path) {
  HKEY key = nullptr;
  if (RegOpenKeyExW(root, path, 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
  RegCloseKey(key);
  return true;
}

// The machine's hive is one that takes no keys for as long as this object lives.
class ClosedMachineHive {
 public:
  ClosedMachineHive() {
    constexpr wchar_t kPath[] = L"Software\\OnduraEServiceClosedHive";
    RegCreateKeyExW(HKEY_CURRENT_USER, kPath, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &gone_, nullptr);
    RegDeleteKeyW(HKEY_CURRENT_USER, kPath);
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, gone_);
  }
  ~ClosedMachineHive() {
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    RegCloseKey(gone_);
  }
  ClosedMachineHive(const ClosedMachineHive&) = delete;
  ClosedMachineHive& operator=(const ClosedMachineHive&) = delete;

 private:
  HKEY gone_ = nullptr;
};

TEST(PerUserTest, RegistersForTheUserWhereTheMachinesHiveIsClosed) {
  const Apartment apartment;
  const HMODULE library = LoadLibraryA(ONDURA_LIBRARY);
  ASSERT_NE(library, nullptr);
  const auto call = [&](const char* entry) {
    const auto address = reinterpret_cast<void*>(GetProcAddress(library, entry));
    return reinterpret_cast<HRESULT(STDAPICALLTYPE*)()>(address)();
  };
  {
    const ClosedMachineHive closed;
    EXPECT_EQ(call("DllRegisterServer"), S_OK);
  }
  EXPECT_FALSE(HasKey(HKEY_LOCAL_MACHINE, kClassKey));
  EXPECT_TRUE(HasKey(HKEY_CURRENT_USER, kClassKey));
  EXPECT_EQ(call("DllUnregisterServer"), S_OK);
  EXPECT_FALSE(HasKey(HKEY_CURRENT_USER, kClassKey));
  FreeLibrary(library);
}

}  // namespace
}  // namespace ondura_client
