#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>

#include "machines/simulated/SimulatedMachine.h"
#include "profile/ProfileStore.h"
#include "profile/Transfer.h"

namespace ondura {
namespace {

using namespace std::string_literals;

constexpr std::string_view kAnn = R"(C:\data\Prodann\Prod.ini)";
constexpr std::string_view kShared = R"(C:\data\UserName.ini)";

class ProfileTest : public ::testing::Test {
 protected:
  ProfileTest() {
    installation_.ExeLocation = "C:\\exe\\";
    installation_.VirtualPath = "C:\\data\\";
    installation_.ProductName = "Prod Name";
    installation_.ProductInstallationName = "Prod";
    installation_.CurrentUser = "ann";
    house_.PutFolder("C:\\data\\Prodann");
  }

  void PutMachineValue(std::string_view name, const RegistryValue& value) {
    house_.PutRegistryValue({RegistryRoot::kLocalMachine, "Software\\Prod", name}, value);
  }

  SimulatedMachine house_;
  Installation installation_;
  Transfer transfer_{house_.machine(), installation_};
  ProfileStore store_{house_.machine(), installation_};
};

struct ReadCase {
  const char* story;
  std::string_view file, section, key, stored, clear;
  std::function<std::string()> read;
};

TEST_F(ProfileTest, EachReadGoesToItsOwnStoreInItsOwnForm) {
  const Transfer& t = transfer_;
  const ProfileStore& s = store_;
  const std::string_view user = "Default User name";
  const ReadCase rows[] = {{"shifted proxy", kAnn, "Proxy", "Rtqz{Pcog", "rtqz{", "proxy",
                            [&] { return t.Trf_ReadProxyProfile("ProxyName"); }},
                           {"shifted account", kAnn, "Tolmera", "wugtpcog", "cppÆ", "annÄ",
                            [&] { return t.Trf_ReadUserProfile("username"); }},
                           {"a code below 2", kAnn, "Tolmera", "wugtpcog", "cp\x01p", "",
                            [&] { return t.Trf_ReadUserProfile("username"); }},
                           {"Base64, trimmed and then cut", kAnn, "Tolmera", "pw", "IHDkc3MgDXg=", "päss ",
                            [&] { return t.Trf_ReadUserProfileNew("pw"); }},
                           {"a flag with quoted blanks", kShared, "Tolmera", "started", " \"1 \" ", "1 ",
                            [&] { return t.Trf_ReadUserNameProfile("Started"); }},
                           {"a section called Registry", kShared, "Registry", "Tray", "3", "3",
                            [&] { return t.Trf_ReadUserNameProfileReg("Tray"); }},
                           {"the scan type", kShared, "ScanType", "DB", "0", "0",
                            [&] { return t.Trf_ReadUserNameDBProfile("DB"); }},
                           {"the plug-in file", R"(C:\data\Prod NameSearch.ini)", "Tolmera", "k", "v", "v",
                            [&] { return t.Trf_ReadPluginUserProfile("k"); }},
                           {"any letter case", kAnn, "REALTIME", "ScannerId", "7", "7",
                            [&] { return s.ReadProfileValue("realtime", "SCANNERID"); }},
                           {"another user", R"(C:\data\Prodbob\Prod.ini)", "S", "k", "2", "2",
                            [&] { return s.ReadUserProfileValue("bob", "S", "k"); }},
                           {"the default user, cut", kShared, "Registry", user, " cpp\x0Fx ", "ann",
                            [&] { return s.ReadDefaultUser(user); }},
                           {"a default user of blanks", kShared, "Registry", user, "\"   \"", "",
                            [&] { return s.ReadDefaultUser(user); }},
                           {"a shared value, trimmed", kShared, "Registry", "k", "\" 1 \"", "1",
                            [&] { return s.ReadSharedRegistryValue("k"); }},
                           {"the install pointer", R"(C:\exe\UserName.ini)", "Registry", "k", "\" D:\\d \"",
                            "D:\\d", [&] { return s.ReadInstallRegistryValue("k"); }}};
  for (const ReadCase& row : rows) {
    SCOPED_TRACE(row.story);
    house_.disk().Erase("C:\\data");
    EXPECT_EQ(row.read(), "");
    house_.WriteIni(row.file, row.section, row.key, row.stored);
    EXPECT_EQ(row.read(), row.clear);
  }
}

TEST_F(ProfileTest, EachWriteReachesItsStoreInItsForm) {
  transfer_.Trf_WriteUserProfile("password", "ab\xC3\xBD");  // code 253, the last that shifts
  EXPECT_EQ(house_.FileBytes(kAnn), "[Tolmera]\r\nrcuuyqtf=cd\xFF\r\n");
  EXPECT_EQ(transfer_.Trf_ReadUserProfile("password"), "ab\xC3\xBD");
  transfer_.Trf_WriteUserProfile("password", "");
  EXPECT_EQ(house_.FileBytes(kAnn), "[Tolmera]\r\nrcuuyqtf=\r\n");
  transfer_.Trf_WriteUserProfileDefault("BackupStatus", "Status", "5");
  EXPECT_EQ(house_.FileBytes(kAnn), "[Tolmera]\r\nrcuuyqtf=\r\n[BackupStatus]\r\nStatus=5\r\n");
  transfer_.Trf_WriteUserNameProfile("Started", "0");
  transfer_.Trf_WriteUserNameRegistryProfile("Tray", "1");
  transfer_.Trf_WriteUserNameDBProfile("DB", "0");
  EXPECT_EQ(house_.FileBytes(kShared),
            "[Tolmera]\r\nStarted=0\r\n[Registry]\r\nTray=1\r\n[ScanType]\r\nDB=0\r\n");
  transfer_.Trf_WriteUserProfile("SerNM", std::string(300, 'a'));
  EXPECT_EQ(transfer_.Trf_ReadUserProfile("SerNM"), std::string(255, 'a')) << "cut, and still decoded";
  // A user without a folder gets none.
  installation_.CurrentUser = "bob";
  transfer_.Trf_WriteUserProfileDefault("BackupStatus", "Status", "5");
  EXPECT_FALSE(house_.FileBytes(R"(C:\data\Prodbob\Prod.ini)"));
  EXPECT_FALSE(house_.machine().folders.Exists(R"(C:\data\Prodbob)"));
}

TEST_F(ProfileTest, NumbersTellAMissingKeyFromOneThatDoesNotFit) {
  EXPECT_EQ(store_.ReadLastRetValue(), 0);
  EXPECT_EQ(transfer_.Trf_ReadServerValues("Max"), -1);
  EXPECT_EQ(transfer_.Trf_ReadOutputValue("BackupStatus", "Cancel"), -10);
  const std::pair<std::string_view, int> rows[] = {
      {"1", 1}, {"-32768", -32768}, {"32767", 32767}, {"32768", 0}, {"-32769", 0}, {"text", 0}, {"12x", 12}};
  for (const auto& [stored, number] : rows) {
    house_.WriteIni(kAnn, "Server", "Max", stored);
    EXPECT_EQ(transfer_.Trf_ReadServerValues("max"), number) << stored;
    house_.WriteIni(kAnn, "BackupStatus", "Cancel", stored);
    EXPECT_EQ(transfer_.Trf_ReadOutputValue("BackupStatus", "Cancel"), number) << stored;
  }
  house_.WriteIni(kAnn, "BackupStatus", "Cancel", "");
  EXPECT_EQ(transfer_.Trf_ReadOutputValue("BackupStatus", "Cancel"), -10) << "an empty one counts as missing";
  for (const auto& [stored, number] : {std::pair{"-409", -409.}, {"402", 402.}, {"1.5", 1.5}, {"x", 0.}}) {
    house_.WriteIni(kAnn, "BackupStatus", "RetValue", stored);
    EXPECT_EQ(store_.ReadLastRetValue(), number) << stored;
  }
}

TEST_F(ProfileTest, DamagedProfilesReadAsEmpty) {
  for (const std::string& bytes : {""s, "\0\xFF[Tolmera\r=\n]\0"s, std::string(4'000'000, '\xFE')}) {
    house_.PutFile(kAnn, bytes);
    EXPECT_EQ(transfer_.Trf_ReadUserProfile("username"), "") << bytes.size();
    EXPECT_EQ(transfer_.Trf_ReadOutputValue("BackupStatus", "Cancel"), -10) << bytes.size();
  }
}

TEST_F(ProfileTest, MachineKeyValuesAreCutTrimmedAndDecodedEachInItsWay) {
  EXPECT_EQ(store_.ReadProfilefromRegistry("v"), "");
  const auto expect = [&](const RegistryValue& value, std::string_view coded, std::string_view plain,
                          std::string_view random) {
    PutMachineValue("v", value);
    EXPECT_EQ(store_.ReadProfilefromRegistry("V"), coded) << value.text;
    EXPECT_EQ(store_.ReadProfilefromRegistryWithoutDeCrypt("V"), plain) << value.text;
    EXPECT_EQ(store_.ReadRandomNumFromRegistry("V"), random) << value.text;
  };
  expect({RegistryType::kText, " QQ== \rZg==", 0}, "A", "QQ==", " QQ== ");
  expect({RegistryType::kText, "QQ1C", 0}, "A", "QQ1C", "QQ1C");  // decodes to "A", a return and "B"
  expect({RegistryType::kText, std::string(1023, ' '), 0}, "", "", std::string(1023, ' '));
  expect({RegistryType::kText, std::string(1024, 'Q'), 0}, "", "", "");
  expect({RegistryType::kDword, "", 7}, "", "", "");
}

}  // namespace
}  // namespace ondura
