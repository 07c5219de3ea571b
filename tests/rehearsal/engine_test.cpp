#include <functional>

#include "Rehearsal.h"
#include "util/date_text.h"

namespace ondura::rehearsal {
namespace {

const std::string kDocuments = "C:\\Users\\ann\\Documents\\";

using Given = std::function<void(Rehearsal&)>;

Given Account(const char* key, const char* value) {
  return [=](Rehearsal& house) { house.transfer().Trf_WriteUserProfile(key, value); };
}
Given OnServer(const char* section, const char* key, const char* value) {
  return [=](Rehearsal& house) {
    house.machine().profiles.WriteString({Rehearsal::VaultFile("account.ini"), section, key}, value);
  };
}
Given Selected(const std::vector<std::string>& lines) {
  return [=](Rehearsal& house) { house.PutLines("atbkupfolderlist.txt", lines); };
}

struct AnswerCase {
  std::string story, parameters, want;
  Given given = [](Rehearsal&) {};
};

TEST(EngineTest, LeavesTheResultOfTheTable) {
  for (const AnswerCase& row :
       {AnswerCase{"another password than the first contact's", " 24<>", "-403",
                   Account("password", "trout")},
        AnswerCase{"another encryption password", " 28<>", "-404", Account("encpassword", "sled")},
        AnswerCase{"a server that is not there", " 51<\\9_05_07_57>", "-416",
                   Account("serverip", "10.0.0.9")},
        AnswerCase{"a selection with no file in it", " 51<>", "-411", Selected({"C:\\Empty"})},
        AnswerCase{"more than the account may hold", " 51<>", "-432", OnServer("Account", "Max", "8")},
        AnswerCase{"a result that is rehearsed", " 51<>", "-427", OnServer("Rehearsal", "51", "-427")}}) {
    Rehearsal house;
    house.PutFile(kDocuments + "a.txt", "some text");
    house.PutLines("atbkupfolderlist.txt", {kDocuments});
    house.MakeFolder("C:\\Empty");
    house.Run(" 17");
    row.given(house);
    EXPECT_EQ(house.Run(row.parameters), row.want) << row.story;
  }
}

// Writes the compare list of all files given, as the job does while the engine runs.
void WriteCompareList(Rehearsal& house, const std::vector<std::string>& paths) {
  std::vector<std::string> lines;
  for (const std::string& path : paths) {
    const LocalTime modified = *house.machine().files.Modified(path);
    lines.push_back(path + "/" + std::to_string(*house.machine().files.Size(path)) + "/" +
                    FormatDate(kStampPicture, modified) + "/" +
                    FormatDate(kStampPicture, modified + std::chrono::hours{1}) + "/" +
                    FormatDate(kStampPicture, modified - std::chrono::hours{1}));
  }
  house.MakeFolder(house.UserFile("TempCom"));
  house.PutLines("TempCom\\CompareListInput1.txt", lines);
  house.SetStatus("CompareListCount", "0");
  house.SetStatus("StatusCheckCount", "1");
}

TEST(EngineTest, ReportsFilesThatShareAPlaceInTheVaultAndLinksThatLeaveTheDrive) {
  for (const char* method : {"0", "1"}) {
    Rehearsal house;
    house.transfer().Trf_WriteUserNameDBProfile("DB", method);
    house.PutLines("atbkupfolderlist.txt", {kDocuments, "c:\\users\\ann\\documents\\ONE.txt"});
    house.PutFile(kDocuments + "one.txt", "1");
    const std::filesystem::path host = house.HostRoot() + "/C/Users/ann/Documents";
    std::filesystem::create_symlink("/etc/hostname", host / "link");
    const auto run = [&] {
      if (*method == '0') {
        WriteCompareList(house, {kDocuments + "one.txt", kDocuments + "One.txt"});
        house.SetStatus("StatusCheckCount", "1");
      }
      return house.Run(" 51<>");
    };
    if (*method == '1') {
      EXPECT_EQ(run(), "402") << "one file, chosen twice";
    }
    std::ofstream{host / "One.txt"} << "2";
    EXPECT_EQ(run(), "-1001");
    EXPECT_FALSE(house.machine().files.Exists(Rehearsal::VaultFile("C\\Users\\ann\\Documents\\link")));
    const auto told = [&](const char* text) { return testing::Contains(testing::HasSubstr(text)); };
    EXPECT_THAT(house.SessionLines(), told("has this name in another letter case"));
    if (*method == '1') {
      EXPECT_THAT(house.SessionLines(), told("a link that leads off its drive"));
    }
  }
}

TEST(ScannerTest, BuildsTheDatabaseThatSparesTheNextRunEverything) {
  for (const char* command : {"29", "5"}) {
    Rehearsal house;
    house.Install(REHEARSAL_SCANNER, "OnduraScan.exe");
    house.PutFile(kDocuments + "a.txt", "some text");
    house.PutLines("atbkupfolderlist.txt", {kDocuments});
    ASSERT_EQ(house.Run(" 51<>"), "402");
    const std::string database = house.Read(house.UserFile("LDB\\OnduraLDB.Ond"));
    house.PutFile(house.UserFile("LDB\\OnduraLDB.Ond"), "damaged");
    EXPECT_EQ(house.Finish(house.Start(command, "OnduraScan.exe")), 0U);
    EXPECT_EQ(house.ProfileValue("REALTIME", "scanStatus"), "0");
    EXPECT_NE(house.ProfileValue("REALTIME", "ScannerId"), "");
    EXPECT_EQ(house.Read(house.UserFile("LDB\\OnduraLDB.Ond")), database);
    EXPECT_EQ(house.Run(" 51<>"), "-411");
  }
}

TEST(DatabaseManagerTest, StaysForTheJobAndNoLonger) {
  Rehearsal house;
  house.Install(REHEARSAL_DATABASE_MANAGER, "OnduraSDBManager.exe");
  house.transfer().Trf_WriteUserNameProfile("Started", "1");
  const ProcessHandle manager = house.Start("\" " + house.UserFile("LDB") + "\\ \"", "OnduraSDBManager.exe");
  EXPECT_EQ(house.machine().processes.Wait(manager, std::chrono::milliseconds{40'000}),
            ProcessWait::kTimedOut);
  EXPECT_TRUE(house.machine().folders.Exists(house.UserFile("LDB")));
  house.transfer().Trf_WriteUserNameProfile("Started", "0");
  EXPECT_EQ(house.Finish(manager), 0U);
}

}  // namespace
}  // namespace ondura::rehearsal
