#include <gmock/gmock.h>

#include <string>
#include <string_view>
#include <vector>

#include "machines/simulated/SimulatedMachine.h"
#include "profile/Deployment.h"
#include "profile/ProductConfiguration.h"
#include "profile/user_defaults.h"
#include "profile/user_list.h"

namespace ondura {
namespace {

using namespace std::string_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Users = std::vector<std::string>;

class ConfigurationTest : public ::testing::Test {
 protected:
  ConfigurationTest() {
    installation_.ExeLocation = "C:\\exe\\";
    installation_.VirtualPath = "C:\\data\\";
    house_.PutFolder("C:\\data");
  }

  void Put(std::string_view section, std::string_view key, std::string_view value) {
    house_.WriteIni("C:\\data\\Configuration.ini", section, configuration_.StoredForm(key),
                    configuration_.StoredForm(value));
  }

  void PutProduct(std::string_view number) {
    Put("ProductInfo", "ProductNumber", number);
    Put("ProductInfo", "ProductName", "Prod Name");
    Put("ProductInfo", "ProductInstallationName", "Prod");
    Put("ProductInfo", "ExeGroup", "Ond");
    Put("ProductInfo", "ProductCaption", "The Pröd");
    Put("ProductInfo", "Language", "German");
    Put("ConnectionInfo", "DomainName", "backup.example");
  }

  [[nodiscard]] std::vector<std::string> DerivedNames() const {
    const Installation& i = installation_;
    return {i.RegistryRoot, i.ProfileIniName,   i.BackgroundExe, i.TrayExe,
            i.ClientExe,    i.BackupSetSizeExe, i.VssVista32Exe, i.VssVista64Exe};
  }

  bool ReadUsers(std::string_view bytes, Users& list) {
    house_.PutFile("C:\\data\\userlist.ini", bytes);
    return ReadUserList(house_.machine(), "C:\\data\\", list);
  }

  SimulatedMachine house_;
  Installation installation_;
  ProductConfiguration configuration_{house_.machine(), installation_};
};

TEST_F(ConfigurationTest, TheFileFillsEveryProductValueAndDerivedName) {
  PutProduct("3");
  EXPECT_TRUE(configuration_.LoadProductConfiguration());
  const Installation& i = installation_;
  EXPECT_EQ(i.ProductNumber, 3);
  EXPECT_THAT((std::vector{i.ProductName, i.ProductInstallationName, i.ExeGroup, i.ProductCaption, i.Language,
                           i.DomainName, i.DefaultPort}),
              ElementsAre("Prod Name", "Prod", "Ond", "The Pröd", "German", "backup.example", "11905"));
  EXPECT_THAT(DerivedNames(), ElementsAre("Software\\Prod", "\\Prod.ini", "OndBackground.exe", "OndTray.exe",
                                          "OndClsClient.exe", "OndBckupsetSize.exe", "OndVSS_Vista32.exe",
                                          "OndVSS_Vista64.exe"));
  PutProduct("1");
  EXPECT_TRUE(configuration_.LoadProductConfiguration());
  EXPECT_THAT(DerivedNames(), ElementsAre("Software\\Prod", "\\Prod.ini", "OxProfBackground.exe",
                                          "OxPMonitor.exe", "TolmeraProfClient.exe", "OxProfBckupsetSize.exe",
                                          "Tolmera_VSSVista32.exe", "Tolmera_VSSVista64.exe"));
}

TEST_F(ConfigurationTest, ValuesAreTrimmedCutAtTheirTerminatorAndReadThroughTheLongBuffer) {
  Put("S", "Ab", " 9 ");
  EXPECT_EQ(house_.FileBytes("C:\\data\\Configuration.ini"), "[S]\r\nCDde=\"#;<\"#\r\n");
  EXPECT_EQ(configuration_.ReadConfigurationValue("S", "Ab"), "9");
  EXPECT_EQ(configuration_.ReadConfigurationValue("Other", "Ab"), "");
  Put("S", "Ab", "ab\rcd");
  EXPECT_EQ(configuration_.ReadConfigurationValue("S", "Ab"), "ab");
  Put("S", "Ab", std::string(1200, 'x'));
  EXPECT_EQ(configuration_.ReadConfigurationValue("S", "Ab"), std::string(1024, 'x'));
}

TEST_F(ConfigurationTest, AProductWithoutItsMainValuesIsRefusedAndNamesNoExecutable) {
  installation_.ProductNumber = 2;
  EXPECT_FALSE(configuration_.LoadProductConfiguration());
  EXPECT_EQ(installation_.ProductNumber, 2) << "without a file everything stays as it was";
  EXPECT_EQ(installation_.DefaultPort, "");
  const std::pair<std::string_view, std::string_view> rows[] = {
      {"ProductNumber", ""},          {"ProductNumber", "0"}, {"ProductNumber", "two"},
      {"ProductNumber", "65537"},     {"ProductName", ""},    {"ProductName", "  "},
      {"ProductInstallationName", ""}};
  for (const auto& [key, value] : rows) {
    PutProduct("3");
    Put("ProductInfo", key, value);
    EXPECT_FALSE(configuration_.LoadProductConfiguration()) << key << value;
    EXPECT_EQ(installation_.DefaultPort, "11905");
    EXPECT_THAT(DerivedNames(), ElementsAre("", "", "", "", "", "", "", "")) << key << value;
  }
  for (const std::string& damaged : {""s, "\xFF\xFE\0\0[ProductInfo"s, std::string(3'000'000, '=')}) {
    house_.PutFile("C:\\data\\Configuration.ini", damaged);
    EXPECT_FALSE(configuration_.LoadProductConfiguration()) << damaged.size();
  }
}

TEST_F(ConfigurationTest, TheDeploymentNamesTheServersOneByOne) {
  PutProduct("3");
  EXPECT_EQ(ReadDeployment(house_.machine(), installation_).NotificationHost, "notify.backup.example");
  house_.PutFile("C:\\exe\\Deployment.ini",
                 "[deployment]\r\nSecondaryServer= two.test \r\nNotificationHost=n.test\r\n");
  ASSERT_TRUE(configuration_.LoadProductConfiguration());
  EXPECT_EQ(installation_.DefaultServerAddress, "primary.backup.example");
  EXPECT_EQ(installation_.AlternateServerAddress, "two.test");
  EXPECT_EQ(ReadDeployment(house_.machine(), installation_).NotificationHost, "n.test");
}

TEST_F(ConfigurationTest, TheLastLineOfTheUserListCounts) {
  const std::pair<std::string, Users> rows[] = {{"ann", {"ann"}},
                                                {"ann;bob;\r\n", {"ann", "bob", ""}},
                                                {"a;b\r\nc", {"c"}},
                                                {"a;b\n\r\n", {""}},
                                                {"\n", {""}},
                                                {"", {"before"}},
                                                {"J\xF6rg;", {"Jörg", ""}},
                                                {"a\0\x80;b"s, {"a\0€"s, "b"}}};
  for (const auto& [bytes, users] : rows) {
    Users list{"before"};
    EXPECT_TRUE(ReadUsers(bytes, list)) << bytes;
    EXPECT_EQ(list, users) << bytes;
  }
}

TEST_F(ConfigurationTest, AUserListThatIsMissingOrCannotBeReadChangesNothing) {
  Users list{"before"};
  EXPECT_FALSE(ReadUserList(house_.machine(), "C:\\data\\", list));
  house_.Fail("Files.Read");
  EXPECT_TRUE(ReadUsers("ann;", list));
  EXPECT_THAT(list, ElementsAre("before"));
  EXPECT_THAT(house_.UnfiredFaults(), IsEmpty());
}

TEST_F(ConfigurationTest, AHugeUserListNeitherFillsTheMemoryNorCutsANameInTwo) {
  Users list;
  std::string bytes;
  bytes.resize(100'000'000, '\n');
  EXPECT_TRUE(ReadUsers(bytes + "ann;bob;", list));
  EXPECT_THAT(list, ElementsAre("ann", "bob", ""));
  bytes.assign(4'000'000, ';');
  EXPECT_TRUE(ReadUsers(bytes, list));
  EXPECT_EQ(list.size(), 256U * 1024 + 1);
  bytes.assign(4'000'000, 'x');
  EXPECT_TRUE(ReadUsers("ann;" + bytes + ";bob;", list));
  EXPECT_THAT(list, ElementsAre("ann", ""));
}

TEST_F(ConfigurationTest, DefaultsFillTheGapsOfAUserAndReplaceNothing) {
  installation_.ProductInstallationName = "Prod";
  for (const auto* name : {"scheduleData.txt", "atbkupfolderlist.txt", "SimpleAutoPath.ini", "other.txt"}) {
    house_.PutFile("C:\\data\\Prod\\"s + name, "default");
  }
  house_.PutFile("C:\\data\\Prodann\\scheduleData.txt", "own");
  CopyDefaults(house_.machine(), installation_, "ann");
  EXPECT_EQ(house_.FilesUnder("C:\\data\\Prodann").size(), 3U);
  EXPECT_EQ(house_.FileBytes("C:\\data\\Prodann\\scheduleData.txt"), "own");
  EXPECT_EQ(house_.FileBytes("C:\\data\\Prodann\\atbkupfolderlist.txt"), "default");
  EXPECT_EQ(house_.FileBytes("C:\\data\\Prodann\\SimpleAutoPath.ini"), "default");
}

}  // namespace
}  // namespace ondura
