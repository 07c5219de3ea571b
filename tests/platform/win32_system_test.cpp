#include <gmock/gmock.h>

#include <chrono>

#include "TemporaryFolder.h"
#include "machines/win32/Win32Machine.h"
#include "machines/win32/paths.h"
#include "machines/win32/windows_api.h"

namespace ondura {

namespace {

using testing::Optional;

class Win32SystemTest : public testing::Test {
 protected:
  std::unique_ptr<Win32Machine> owner_ = MakeWin32Machine();
  const Machine& machine_ = owner_->machine();
};

TEST_F(Win32SystemTest, ACharacterThatThePageLacksNeverBecomesASimilarLetter) {
  EXPECT_EQ(machine_.code_page.FromUtf8("Łódź"),
            "?\xF3"
            "d?");
  EXPECT_EQ(machine_.code_page.FromUtf8("\U0001F600"), "??") << "two units of UTF-16";
}

// Under the folder of tests in the user's own hive.
class Win32RegistryTest : public Win32SystemTest {
 protected:
  static constexpr const char* kFolder = R"(Software\Ondura tests)";

  ~Win32RegistryTest() override { RegDeleteTreeA(HKEY_CURRENT_USER, kFolder); }

  static RegistryName Name(std::string_view value) { return {RegistryRoot::kCurrentUser, kFolder, value}; }

  static void PutRaw(const char* name, DWORD type, std::string_view bytes) {
    RegSetKeyValueA(HKEY_CURRENT_USER, kFolder, name, type, bytes.data(), static_cast<DWORD>(bytes.size()));
  }
};

TEST_F(Win32RegistryTest, EachKindOfReadKeepsItsBufferAndTypes) {
  const std::string longest(1023, 'x');
  const std::string longer(1024, 'x');
  PutRaw("fits", REG_SZ, {longest.c_str(), longest.size() + 1});
  PutRaw("longer", REG_SZ, {longer.c_str(), longer.size() + 1});
  PutRaw("bytes", REG_BINARY, "\x07\x08\x09");
  PutRaw("number", REG_DWORD, "\x01\x02\x03\x04");
  PutRaw("expanded", REG_EXPAND_SZ, "%TEMP%");
  using Case = std::tuple<const char*, RegistryAccess, std::optional<RegistryValue>>;
  for (const auto& [name, access, want] : std::vector<Case>{
           {"fits", RegistryAccess::kQueryValue, RegistryValue{RegistryType::kText, longest, 0}},
           {"longer", RegistryAccess::kQueryValue, RegistryValue{RegistryType::kText, longer, 0}},
           {"bytes", RegistryAccess::kAll, RegistryValue{RegistryType::kBinary, "", 7}},
           {"number", RegistryAccess::kAll, RegistryValue{RegistryType::kDword, "", 0x04030201}},
           {"expanded", RegistryAccess::kAll, RegistryValue{}},
           {"none", RegistryAccess::kAll, std::nullopt}}) {
    const auto read = machine_.registry.Read(Name(name), access);
    ASSERT_EQ(read.has_value(), want.has_value()) << name;
    if (!read) continue;
    EXPECT_EQ(read->type, want->type) << name;
    EXPECT_EQ(read->text, want->text) << name;
    EXPECT_EQ(read->number, want->number) << name;
  }
}

TEST_F(Win32SystemTest, ServicesTellTheirStateAndAMissingOneNothing) {
  for (const auto access : {ServiceManagerAccess::kRead, ServiceManagerAccess::kAll}) {
    EXPECT_EQ(machine_.services.State("PlugPlay", access), 4);
    EXPECT_EQ(machine_.services.State("Nobody's Service", access), 0);
  }
}

TEST_F(Win32SystemTest, PumpingHandsOutMessagesAndLeavesTheEndToTheHost) {
  const UINT_PTR timer = SetTimer(nullptr, 0, 1, [](HWND, UINT, UINT_PTR id, DWORD) {
    KillTimer(nullptr, id);
    PostQuitMessage(7);
  });
  ASSERT_NE(timer, 0U);
  MSG message{};
  for (int i = 0; i < 100 && message.message != WM_QUIT; ++i) {
    machine_.clock.Sleep(std::chrono::milliseconds{10});
    machine_.pump.Pump();
    PeekMessageA(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);
  }
  EXPECT_EQ(message.message, static_cast<UINT>(WM_QUIT)) << "the timer's call came through and its end too";
  EXPECT_EQ(message.wParam, 7U);
}

TEST_F(Win32SystemTest, AWindowIsFoundHiddenAndAskedToClose) {
  constexpr const char* kTitle = "Ondura tests progress";
  const HWND window = CreateWindowA("Static", kTitle, WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 10, 10, nullptr,
                                    nullptr, GetModuleHandleA(nullptr), nullptr);
  ASSERT_NE(window, nullptr);
  EXPECT_EQ(machine_.desktop.FindTopWindow("Static", "Ondura tests"), 0) << "a part of a title is another";
  const WindowHandle found = machine_.desktop.FindTopWindow("STATIC", kTitle);
  EXPECT_EQ(found, HandleToLong(window));
  EXPECT_EQ(machine_.desktop.ProcessOfWindow(found), GetCurrentProcessId());
  EXPECT_TRUE(machine_.desktop.Show(found, WindowShow::kHide));
  EXPECT_FALSE(IsWindowVisible(window));
  EXPECT_FALSE(machine_.desktop.Show(found, WindowShow::kHide)) << "it was hidden before";
  EXPECT_TRUE(machine_.desktop.Post(found, kCloseMessage));
  EXPECT_TRUE(IsWindow(window)) << "the message waits for the window's own loop";
  machine_.pump.Pump();
  EXPECT_FALSE(IsWindow(window));
  EXPECT_FALSE(machine_.desktop.Post(0, kCloseMessage));
}

TEST_F(Win32SystemTest, TheAccountsPlacesAndTheMachinesNameAreThere) {
  EXPECT_TRUE(machine_.folders.Exists(machine_.drives.LocalDataFolder()));
  const std::string name = machine_.system.ComputerName();
  EXPECT_TRUE(!name.empty() && name.size() <= 15) << name;
}

TEST_F(Win32SystemTest, AMessageWaitsForNobody) {
  const auto before = machine_.clock.Now();
  machine_.desktop.ShowMessage("Größe", "Ondura tests", MessageIcon::kStop);
  EXPECT_LE(machine_.clock.Now() - before, std::chrono::seconds{5});
}

TEST_F(Win32SystemTest, NamesAreLookedUpBetweenStartAndCleanUp) {
  const NameLookup address = machine_.names.AddressOf("localhost");
  EXPECT_THAT(address.found, Optional(std::string{"127.0.0.1"}));
  const NameLookup name = machine_.names.NameOf("127.0.0.1");
  EXPECT_TRUE(name.found.has_value());
  for (const NameLookup& lookup : {address, name}) EXPECT_TRUE(lookup.started && lookup.cleaned_up);
}

TEST_F(Win32SystemTest, ContinuousBackupIsToldOnlyWhereItIsInstalled) {
  machine_.continuous_backup.PostCDPStatusMsg(ContinuousBackupState::kPause);
  machine_.continuous_backup.ValidateLocalDBDllVersion();
  const std::string installed = FolderOfTests() + "OnduraERealTime.dll";
  ASSERT_TRUE(machine_.files.Copy(FolderOfTests() + "win32_real_time.dll", installed));
  {
    const auto client = MakeWin32Machine();
    client->machine().continuous_backup.PostCDPStatusMsg(ContinuousBackupState::kPause);
    client->machine().continuous_backup.ValidateLocalDBDllVersion();
    client->machine().continuous_backup.PostCDPStatusMsg(ContinuousBackupState::kResume);
  }
  EXPECT_THAT(machine_.files.Read(installed + ".txt"), Optional(std::string{"state 0\nvalidate\nstate 1\n"}));
  EXPECT_TRUE(machine_.files.Remove(installed + ".txt", Removal::kForce));
  EXPECT_TRUE(machine_.files.Remove(installed, Removal::kForce)) << "the library was let go";
}

}  // namespace

}  // namespace ondura
