#include <gtest/gtest.h>

#include "com_client.h"

#include <sddl.h>

namespace ondura_client {
namespace {

constexpr wchar_t kClassKey[] = L"Software\\Classes\\OnduraEService.Controller\\CLSID";

bool HasKey(HKEY root, const wchar_t* path) {
  HKEY key = nullptr;
  if (RegOpenKeyExW(root, path, 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
  RegCloseKey(key);
  return true;
}

enum class Hive { kRefusesRights, kIsGone };

// The machine's hive takes no keys for as long as this object lives.
class ClosedMachineHive {
 public:
  explicit ClosedMachineHive(Hive how) {
    RegCreateKeyExW(HKEY_CURRENT_USER, kPath, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &hive_, nullptr);
    if (how == Hive::kIsGone) {
      RegDeleteKeyW(HKEY_CURRENT_USER, kPath);
    } else {
      RegCreateKeyExW(hive_, L"Software\\Classes", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &classes_,
                      nullptr);
      Guard(L"D:(D;;KA;;;WD)");
    }
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, hive_);
  }
  ~ClosedMachineHive() {
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    if (classes_ != nullptr) Guard(L"D:(A;;KA;;;WD)");
    RegCloseKey(classes_);
    RegCloseKey(hive_);
    RegDeleteTreeW(HKEY_CURRENT_USER, kPath);
  }
  ClosedMachineHive(const ClosedMachineHive&) = delete;
  ClosedMachineHive& operator=(const ClosedMachineHive&) = delete;

 private:
  static constexpr wchar_t kPath[] = L"Software\\OnduraEServiceClosedHive";

  void Guard(const wchar_t* rights) {
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    ConvertStringSecurityDescriptorToSecurityDescriptorW(rights, SDDL_REVISION_1, &descriptor, nullptr);
    RegSetKeySecurity(classes_, DACL_SECURITY_INFORMATION, descriptor);
    LocalFree(descriptor);
  }

  HKEY hive_ = nullptr;
  HKEY classes_ = nullptr;
};

TEST(PerUserTest, RegistersForTheUserWhereRightsToTheMachinesHiveAreRefusedAlone) {
  const Apartment apartment;
  const HMODULE library = LoadLibraryA(ONDURA_LIBRARY);
  ASSERT_NE(library, nullptr);
  const auto call = [&](const char* entry) {
    const auto address = reinterpret_cast<void*>(GetProcAddress(library, entry));
    return reinterpret_cast<HRESULT(STDAPICALLTYPE*)()>(address)();
  };
  {
    const ClosedMachineHive closed(Hive::kIsGone);
    EXPECT_TRUE(FAILED(call("DllRegisterServer")));
    EXPECT_FALSE(HasKey(HKEY_CURRENT_USER, kClassKey));
  }
  {
    const ClosedMachineHive closed(Hive::kRefusesRights);
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
