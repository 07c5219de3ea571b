#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tools/tool_run.h"

namespace ondura::testing {

namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::Values;

const std::string kProfile = "Onduraann/Ondura.ini";
const std::string kShared = "UserName.ini";

TEST(ToolInit, WritesWhatTheServiceStartsFrom) {
  const ToolHouse house;
  house.Put("engine", "#!/bin/sh\n");
  ASSERT_EQ(house.Run({"init", "--engine", house.root() + "/engine", "--server", "backup.test"}).exit, 0);
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

TEST(ToolInit, DoneAgainByForceKeepsTheUsers) {
  const ToolHouse house;
  house.MakeWithAnn();
  ASSERT_EQ(house.Run({"init", "--force"}).exit, 0);
  EXPECT_EQ(house.Run({"user", "list"}).out, "ann\n");
  EXPECT_EQ(house.Run({"select", "ann", "D:\\notes.txt"}).exit, 0) << "the mapped drive is gone";
}

TEST(ToolUser, AddedFirstIsTheDefaultAndTheListEndsWithItsMark) {
  const ToolHouse house;
  house.MakeWithAnn();
  ASSERT_EQ(house.Run({"user", "add", "bob", "--password-stdin"}, "other\n").exit, 0);
  EXPECT_EQ(house.Bytes(std::string{ToolHouse::kData} + "userlist.ini"), "ann;bob;\r\n");
  EXPECT_THAT(house.Bytes(ToolHouse::kData + kShared), HasSubstr("Default User name=cpp\r\n"));
  EXPECT_EQ(house.Run({"user", "list", "--json"}).out, "[\n  \"ann\",\n  \"bob\"\n]\n");
}

struct FormCase {
  const char* story;
  const char* key;
  const char* value;
  std::string file;
  const char* line;
};

class ToolForm : public ::testing::TestWithParam<FormCase> {};

TEST_P(ToolForm, KeepsEachKeyWhereTheServiceReadsIt) {
  const ToolHouse house;
  house.MakeWithAnn();
  ASSERT_EQ(house.Run({"set", "ANN", GetParam().key, GetParam().value}).exit, 0);
  EXPECT_THAT(house.Bytes(ToolHouse::kData + GetParam().file), HasSubstr(GetParam().line));
  EXPECT_EQ(house.Run({"get", "ann", GetParam().key}).out, std::string{GetParam().value} + "\n");
}

INSTANTIATE_TEST_SUITE_P(
    Tool, ToolForm,
    Values(FormCase{"a shifted key is found in any letters", "SERVERIP", "abc", kProfile, "ugtxgtkr=cde\r\n"},
           FormCase{"a plain copy beside it", "IPAddres", "abc", kProfile, "IPAddres=abc\r\n"},
           FormCase{"a key of the engine", "cancel", "1", kProfile,
                    "[BackupStatus]\r\nStatus=0\r\nCancel=1\r\n"},
           FormCase{"a state of the machine", "RealTimeBackup", "1", kShared, "RealTimeBackup=1\r\n"},
           FormCase{"the method of all users", "DB", "0", kShared, "[ScanType]\r\nDB=0\r\n"},
           FormCase{"the shifted value of a plain key", "Default User name", "ann", kShared,
                    "Default User name=cpp\r\n"}));

class ToolSecret : public ::testing::TestWithParam<const char*> {};

TEST_P(ToolSecret, IsNeverShown) {
  const ToolHouse house;
  house.MakeWithAnn();
  const std::string key = GetParam();
  ASSERT_EQ(house.Run({"set", "ann", key, "--stdin"}, "Geheim7\n").exit, 0);
  EXPECT_THAT(house.OfAnn("Ondura.ini"), Not(HasSubstr("Geheim7"))) << "kept in clear";
  EXPECT_EQ(house.Run({"get", "ann", key}).out, "(set)\n");
  const std::string all = house.Run({"get", "ann"}).out + house.Run({"get", "ann", "--json"}).out;
  EXPECT_THAT(all, AllOf(HasSubstr(key), Not(HasSubstr("Geheim7"))));
  ASSERT_EQ(house.Run({"set", "ann", key, ""}).exit, 0);
  EXPECT_EQ(house.Run({"get", "ann", key}).out, "(not set)\n");
}

INSTANTIATE_TEST_SUITE_P(Tool, ToolSecret,
                         Values("password", "encpassword", "encpasswordnew", "SqlPS", "ProxyPass", "random"));

struct WarningCase {
  const char* story;
  const char* key;
  std::string value;
  const char* says;
};

class ToolWarning : public ::testing::TestWithParam<WarningCase> {};

TEST_P(ToolWarning, ComesWhereAValueIsNotHeldAsGiven) {
  const ToolHouse house;
  house.MakeWithAnn();
  const ToolResult result = house.Run({"set", "ann", GetParam().key, GetParam().value});
  EXPECT_EQ(result.exit, 0);
  if (*GetParam().says == '\0') {
    EXPECT_EQ(result.err, "");
  } else {
    EXPECT_THAT(result.err, HasSubstr(GetParam().says));
  }
}

INSTANTIATE_TEST_SUITE_P(
    Tool, ToolWarning,
    Values(WarningCase{"255 bytes still fit", "SerNM", std::string(255, 'x'), ""},
           WarningCase{"one more is cut", "SerNM", std::string(256, 'x'), "longer than 255"},
           WarningCase{"Base64 is longer than its value", "encpasswordnew", std::string(192, 'x'),
                       "longer than 255"},
           WarningCase{"umlauts are in the code page", "SerNM", "M\xC3\xBCller", ""},
           WarningCase{"Greek is not", "SerNM", "\xCE\xA9", "code page"},
           WarningCase{"a blank in front is lost", "SerNM", " x", "blanks at its ends"},
           WarningCase{"a character that has no shifted form", "SerNM", "a\xC3\xBF", "every character"},
           WarningCase{"percent signs become quotes, which are taken off", "SerNM", "%x%",
                       "every character"}));

}  // namespace

}  // namespace ondura::testing
