#include "tools/tool_run.h"

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
  const AnnHouse house;
  ASSERT_EQ(house.Run({"init", "--force"}).exit, 0);
  EXPECT_EQ(house.Run({"user", "list"}).out, "ann\n");
  EXPECT_EQ(house.Run({"select", "ann", "D:\\notes.txt"}).exit, 0) << "the mapped drive is gone";
}

TEST(ToolUser, AddedFirstIsTheDefaultAndTheListEndsWithItsMark) {
  const AnnHouse house;
  ASSERT_EQ(house.Run({"user", "add", "bob", "--password-stdin"}, "other\n").exit, 0);
  EXPECT_EQ(house.Bytes(std::string{ToolHouse::kData} + "userlist.ini"), "ann;bob;\r\n");
  EXPECT_THAT(house.Bytes(ToolHouse::kData + kShared), HasSubstr("Default User name=cpp\r\n"));
  EXPECT_EQ(house.Run({"user", "list", "--json"}).out, "[\n  \"ann\",\n  \"bob\"\n]\n");
}

struct FormCase {
  std::string story, key, value, file, line;
};

TEST(ToolForm, KeepsEachKeyWhereTheServiceReadsIt) {
  const AnnHouse house;
  for (const FormCase& row :
       {FormCase{"a shifted key is found in any letters", "SERVERIP", "abc", kProfile, "ugtxgtkr=cde\r\n"},
        FormCase{"a plain copy beside it", "IPAddres", "abc", kProfile, "IPAddres=abc\r\n"},
        FormCase{"a key of the engine", "cancel", "1", kProfile,
                 "[BackupStatus]\r\nStatus=0\r\nCancel=1\r\n"},
        FormCase{"a state of the machine", "RealTimeBackup", "1", kShared, "RealTimeBackup=1\r\n"},
        FormCase{"the method of all users", "DB", "0", kShared, "[ScanType]\r\nDB=0\r\n"},
        FormCase{"the shifted value of a plain key", "Default User name", "ann", kShared,
                 "Default User name=cpp\r\n"}}) {
    EXPECT_EQ(house.Run({"set", "ANN", row.key, row.value}).exit, 0) << row.story;
    EXPECT_THAT(house.Bytes(ToolHouse::kData + row.file), HasSubstr(row.line)) << row.story;
    EXPECT_EQ(house.Run({"get", "ann", row.key}).out, row.value + "\n") << row.story;
  }
}

TEST(ToolSecret, IsNeverShown) {
  const AnnHouse house;
  for (const std::string key :
       {"password", "encpassword", "encpasswordnew", "SqlPS", "ProxyPass", "random"}) {
    EXPECT_EQ(house.Run({"set", "ann", key, "--stdin"}, "Geheim7\n").exit, 0) << key;
    EXPECT_THAT(house.OfAnn("Ondura.ini"), Not(HasSubstr("Geheim7"))) << key << " is kept in clear";
    EXPECT_EQ(house.Run({"get", "ann", key}).out, "(set)\n") << key;
    const std::string all = house.Run({"get", "ann"}).out + house.Run({"get", "ann", "--json"}).out;
    EXPECT_THAT(all, AllOf(HasSubstr(key), Not(HasSubstr("Geheim7"))));
    EXPECT_EQ(house.Run({"set", "ann", key, ""}).exit, 0) << key;
    EXPECT_EQ(house.Run({"get", "ann", key}).out, "(not set)\n") << key;
  }
}

struct WarningCase {
  std::string story, value, says;  // what it says; empty for no warning
  std::string key = "SerNM";
};

TEST(ToolWarning, ComesWhereAValueIsNotHeldAsGiven) {
  const AnnHouse house;
  for (const WarningCase& row :
       {WarningCase{"255 bytes still fit", std::string(255, 'x'), ""},
        WarningCase{"one more is cut", std::string(256, 'x'), "longer than 255"},
        WarningCase{"Base64 is longer than its value", std::string(192, 'x'), "longer than 255",
                    "encpasswordnew"},
        WarningCase{"umlauts are in the code page", "M\xC3\xBCller", ""},
        WarningCase{"Greek is not", "\xCE\xA9", "code page"},
        WarningCase{"a blank in front is lost", " x", "blanks at its ends"},
        WarningCase{"a character that has no shifted form", "a\xC3\xBF", "every character"},
        WarningCase{"percent signs become quotes, which are taken off", "%x%", "every character"}}) {
    const ToolResult result = house.Run({"set", "ann", row.key, row.value});
    EXPECT_EQ(result.exit, 0) << row.story;
    EXPECT_THAT(result.err, HasSubstr(row.says)) << row.story;
    EXPECT_EQ(result.err.empty(), row.says.empty()) << row.story;
  }
}

}  // namespace
}  // namespace ondura::testing
