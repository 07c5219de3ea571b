#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <thread>
#include <vector>

#include "tools/ToolHouse.h"

namespace ondura::testing {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

const std::string kProfile = "Onduraann/Ondura.ini";
const std::string kShared = "UserName.ini";

TEST(ToolInit, WritesWhatTheServiceStartsFrom) {
  const ToolHouse house;
  house.Put("engine", "#!/bin/sh\n");
  ASSERT_EQ(house.Run("init --server backup.test --engine " + house.root() + "/engine").exit, 0);
  const std::string install = "C/Program Files/Ondura/";
  EXPECT_EQ(house.Bytes(install + "UserName.ini"), "[Registry]\r\nVirtualPath=C:\\ProgramData\\Ondura\\\r\n");
  EXPECT_EQ(house.Bytes(install + "OnduraClsClient.exe"), "#!/bin/sh\n");
  EXPECT_THAT(house.Bytes(install + "Deployment.ini"), HasSubstr("PrimaryServer=backup.test\r\n"));
  EXPECT_THAT(house.Bytes(std::string{ToolHouse::kData} + "Configuration.ini"),
              HasSubstr("[ProductInfo]\r\nRStuqrfgwxefvwPQwxopdeghtu=56\r\n"));
  EXPECT_THAT(
      house.Bytes(ToolHouse::kData + kShared),
      AllOf(HasSubstr("OnduraE client=C:\\Program Files\\Ondura\\\r\n"), HasSubstr("Standard=0\r\n")));
}

TEST(ToolInit, DoneAgainByForceKeepsTheUsersOfWhomTheFirstIsTheDefault) {
  const AnnHouse house;
  ASSERT_EQ(house.Run("user add bob --password-stdin", "other\n").exit, 0);
  ASSERT_EQ(house.Run("init --force").exit, 0);
  EXPECT_EQ(house.Run("user list --json").out, "[\n  \"ann\",\n  \"bob\"\n]\n");
  EXPECT_EQ(house.Bytes(std::string{ToolHouse::kData} + "userlist.ini"), "ann;bob;\r\n");
  EXPECT_THAT(house.Bytes(ToolHouse::kData + kShared), HasSubstr("Default User name=cpp\r\n"));
  EXPECT_EQ(house.Run("select ann 'D:\\notes.txt'").exit, 0) << "the mapped drive is gone";
}

TEST(ToolLock, CommandsAtOnceLoseNothing) {
  const AnnHouse house;
  std::vector<std::thread> people;
  for (int i = 0; i < 6; ++i) {
    people.emplace_back([&house, name = "u" + std::to_string(i)] {
      house.Run("user add " + name + " --password-stdin", "secret\n");
      house.Put("disk/" + name, name);
      house.Run("select ann 'D:\\" + name + "'");
    });
  }
  for (std::thread& person : people) person.join();
  EXPECT_EQ(std::ranges::count(house.Run("user list").out, '\n'), 7) << "with ann";
  EXPECT_EQ(std::ranges::count(house.Run("select ann --list").out, '\n'), 6);
}

TEST(ToolInit, LeavesTheMachineToItsOwnerAlone) {
  const ToolHouse house;
  ASSERT_EQ(chmod(house.root().c_str(), 0755), 0);
  EXPECT_THAT(house.Run("init").err, HasSubstr("0700"));
  struct stat status {};
  for (const std::string name :
       {"", "/C", "/machine.ini", "/C/ProgramData/Ondura/UserName.ini", "/C/ProgramData"}) {
    ASSERT_EQ(stat((house.root() + name).c_str(), &status), 0) << name;
    EXPECT_EQ(status.st_mode & 077U, 0U) << name;
  }
}

TEST(ToolForm, KeepsEachKeyWhereTheServiceReadsIt) {
  const AnnHouse house;
  for (const auto& [story, key, value, file, line] : std::vector<std::array<std::string, 5>>{
           {"a shifted key is found in any letters", "SERVERIP", "abc", kProfile, "ugtxgtkr=cde\r\n"},
           {"a plain copy beside it", "IPAddres", "abc", kProfile, "IPAddres=abc\r\n"},
           {"a key of the engine", "cancel", "1", kProfile, "[BackupStatus]\r\nStatus=0\r\nCancel=1\r\n"},
           {"a state of the machine", "RealTimeBackup", "1", kShared, "RealTimeBackup=1\r\n"},
           {"the method of all users", "DB", "0", kShared, "[ScanType]\r\nDB=0\r\n"},
           {"the shifted value of a plain key", "Default User name", "ann", kShared,
            "Default User name=cpp\r\n"}}) {
    EXPECT_EQ(house.Set(key, value).exit, 0) << story;
    EXPECT_THAT(house.Bytes(ToolHouse::kData + file), HasSubstr(line)) << story;
    EXPECT_EQ(house.Get(key).out, value + "\n") << story;
  }
  EXPECT_EQ(house.Run("set ANN port 1").exit, 0) << "the user in any letters";
}

TEST(ToolValue, IsWhatTheServiceUnderstandsOrRefused) {
  const AnnHouse house;
  for (const auto& [key, value, kept] :
       std::vector<std::array<std::string, 3>>{{"ScheduleDisable", "no", "FALSE"},
                                               {"ScheduleDisable", "Yes", "TRUE"},
                                               {"SHUTDOWN", "off", "0"},
                                               {"STARTMISSEDSCH", "on", "1"},
                                               {"port", "65535", "65535"},
                                               {"Status", "10", "10"}}) {
    EXPECT_EQ(house.Set(key, value).exit, 0) << key << value;
    EXPECT_EQ(house.Get(key).out, kept + "\n") << key << value;
  }
  for (const auto& [key, value, says] : std::vector<std::array<std::string, 3>>{
           {"ScheduleDisable", "maybe", "it is TRUE (also yes, on) or FALSE (also no, off)"},
           {"port", "65536", "a whole number from 1 to 65535"},
           {"port", "1e3", "a whole number"},
           {"Max", "10G", "a whole number"},
           {"Max", "99999999999999999999", "a whole number"},
           {"Status", "stop", "5 to ask for a stop"}}) {
    const ToolResult result = house.Set(key, value);
    EXPECT_EQ(result.exit, 2) << key << value;
    EXPECT_THAT(result.err, HasSubstr(says)) << key << value;
  }
  EXPECT_EQ(house.Get("port").out, "65535\n");
}

TEST(ToolSecret, IsNeverShown) {
  const AnnHouse house;
  for (const std::string key :
       {"password", "encpassword", "encpasswordnew", "SqlPS", "ProxyPass", "random"}) {
    EXPECT_EQ(house.Run("set ann " + key + " --stdin", "Geheim7\n").exit, 0) << key;
    EXPECT_THAT(house.OfAnn("Ondura.ini"), Not(HasSubstr("Geheim7"))) << key << " is kept in clear";
    EXPECT_EQ(house.Get(key).out, "(set)\n") << key;
    const std::string all = house.Run("get ann").out + house.Run("get ann --json").out;
    EXPECT_THAT(all, AllOf(HasSubstr(key), Not(HasSubstr("Geheim7"))));
    EXPECT_EQ(house.Set(key, "").exit, 0) << key;
    EXPECT_EQ(house.Get(key).out, "(not set)\n") << key;
  }
}

TEST(ToolWarning, ComesWhereAValueIsNotHeldAsGiven) {
  const AnnHouse house;
  for (const auto& [story, key, value, says] : std::vector<std::array<std::string, 4>>{
           {"255 bytes still fit", "SerNM", std::string(255, 'x'), ""},
           {"one more is cut", "SerNM", std::string(256, 'x'), "longer than 255"},
           {"Base64 is longer than its value", "encpasswordnew", std::string(192, 'x'), "longer than 255"},
           {"umlauts are in the code page", "SerNM", "M\xC3\xBCller", ""},
           {"Greek is not", "SerNM", "\xCE\xA9", "code page"},
           {"blanks at the ends stay", "SerNM", " x ", ""},
           {"a character that has no shifted form", "SerNM", "a\xC3\xBF", "every character"},
           {"percent signs become quotes, which stay", "SerNM", "%x%", ""},
           {"a plain value in quotes keeps them", "Interactive", "'x'", ""},
           {"a backspace would end its line and is refused", "SerNM", "a\b[x]", "break its line"}}) {
    const ToolResult result = house.Set(key, value);
    EXPECT_EQ(result.exit, says == "break its line" ? 2 : 0) << story;
    if (says.empty()) {
      EXPECT_EQ(house.Get(key).out, value + "\n") << story;
    }
    EXPECT_THAT(result.err, HasSubstr(says)) << story;
    EXPECT_EQ(result.err.empty(), says.empty()) << story;
  }
}

}  // namespace
}  // namespace ondura::testing
