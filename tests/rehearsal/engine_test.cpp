#include <functional>
#include <thread>

#include "Rehearsal.h"
#include "util/date_text.h"

namespace ondura::rehearsal {
namespace {

using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;
using ::testing::UnorderedElementsAreArray;
using ::testing::Values;

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
Given List(const char* name, const std::vector<std::string>& lines) {
  return [=](Rehearsal& house) { house.PutLines(name, lines); };
}
Given Selected(const std::vector<std::string>& lines) { return List("atbkupfolderlist.txt", lines); }

struct AnswerCase {
  std::string story, parameters, want;
  Given given = [](Rehearsal&) {};
};

TEST(EngineTest, LeavesTheResultOfTheTable) {
  for (const AnswerCase& row :
       {AnswerCase{"the call after an installation, without brackets", " 17", "402"},
        AnswerCase{"the call of a host, with a folder with blanks", " 12<C:\\Temp Files\\x d>", "402"},
        AnswerCase{"the list of the server, with the empty text of a first job", " 28<>", "402"},
        AnswerCase{"another password than the first contact's", " 24<>", "-403",
                   Account("password", "trout")},
        AnswerCase{"a password that a wrong result has cleared", " 51<>", "-403", Account("password", "")},
        AnswerCase{"another encryption password", " 28<>", "-404", Account("encpassword", "sled")},
        AnswerCase{"a server that is not there", " 51<\\9_05_07_57>", "-416",
                   Account("serverip", "10.0.0.9")},
        AnswerCase{"an empty selection", " 51<>", "-409", Selected({"", "  "})},
        AnswerCase{"a selection with no file in it", " 51<>", "-411", Selected({"C:\\Empty"})},
        AnswerCase{"a selection that is excluded as a whole", " 51<>", "-426",
                   List("atbkupExcludelist.txt", {"c:\\users\\ANN"})},
        AnswerCase{"a chosen file that has gone", " 51<>", "-1001", Selected({kDocuments, "C:\\gone.txt"})},
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

TEST(EngineTest, RefusesWhatIsNoCommandAndWritesNothing) {
  for (const char* parameters : {"", " 52<>", " 51<", " fifty<>"}) {
    Rehearsal house;
    EXPECT_EQ(house.Finish(house.Start(parameters)), 2U) << parameters;
    EXPECT_EQ(house.Result(), "0") << parameters;
  }
}

TEST(EngineTest, PortLookUpKeepsThePortAndTheAddressOfTheProfile) {
  Rehearsal house;
  EXPECT_EQ(house.Run(" 24<>"), "402");
  EXPECT_EQ(house.Read(house.UserFile("DLLOutput1.txt")), "11905\r\nlocalhost\r\n");
  house.transfer().Trf_WriteUserProfile("port", "11911");
  house.Run(" 24<>");
  EXPECT_EQ(house.Read(house.UserFile("DLLOutput1.txt")), "11911\r\nlocalhost\r\n");
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

class MethodTest : public testing::TestWithParam<const char*> {};

TEST_P(MethodTest, CopiesEveryFileOnceAndThenOnlyWhatHasChanged) {
  Rehearsal house;
  house.transfer().Trf_WriteUserNameDBProfile("DB", GetParam());
  const std::string deep = kDocuments + std::string(120, 'd') + "\\" + std::string(120, 'e') + "\\long.txt";
  std::vector<std::string> paths{kDocuments + "a.txt", kDocuments + "empty.bin",
                                 kDocuments + "Übersicht €.txt", deep};
  for (const std::string& path : paths) house.PutFile(path, path.ends_with(".bin") ? "" : path);
  house.PutLines("atbkupfolderlist.txt", {kDocuments});

  WriteCompareList(house, paths);
  ASSERT_EQ(house.Run(" 51<>"), "402");
  EXPECT_THAT(house.Lines("ToBackup.txt"), UnorderedElementsAreArray(paths));
  for (const std::string& path : paths) {
    const std::string copy = Rehearsal::VaultFile("C" + path.substr(2));
    EXPECT_EQ(house.Read(copy), house.Read(path));
    EXPECT_EQ(house.machine().files.Modified(copy), house.machine().files.Modified(path)) << path;
  }

  EXPECT_EQ(house.Run(" 51<>"), "-411");
  EXPECT_THAT(house.Lines("noToBackup.txt"), UnorderedElementsAreArray(paths));

  paths.push_back(kDocuments + "new.txt");
  house.PutFile(paths.back(), "new");
  house.PutFile(paths.front(), "other text of another size");
  WriteCompareList(house, paths);
  EXPECT_EQ(house.Run(" 51<>"), "402");
  EXPECT_THAT(house.Lines("ToBackup.txt"), UnorderedElementsAre(paths.front(), paths.back()));
  EXPECT_EQ(house.Read(Rehearsal::VaultFile("C\\Users\\ann\\Documents\\a.txt")),
            "other text of another size");

  EXPECT_EQ(house.Run(" 16<>"), "402");
  std::size_t bytes = 0;
  for (const std::string& path : paths) bytes += house.Read(path).size();
  EXPECT_EQ(house.ProfileValue("QuotaStatus", "Used"), std::to_string(bytes));
  EXPECT_EQ(house.ProfileValue("QuotaStatus", "Max"), "10737418240");
}

INSTANTIATE_TEST_SUITE_P(Engine, MethodTest, Values("", "1", "0"));

TEST(CompareListTest, WaitsForCompletePartsAndTakesNothingFromTheListOfTheLastJob) {
  Rehearsal house;
  house.transfer().Trf_WriteUserNameDBProfile("DB", "0");
  house.PutLines("atbkupfolderlist.txt", {kDocuments});
  for (const char* name : {"stale.txt", "one.txt", "two.txt"}) house.PutFile(kDocuments + name, name);
  WriteCompareList(house, {kDocuments + "stale.txt"});
  house.SetStatus("StatusCheckCount", "0");

  const ProcessHandle engine = house.Start(" 51<>");
  const auto pause = [] { std::this_thread::sleep_for(std::chrono::milliseconds{60}); };
  pause();
  EXPECT_FALSE(house.machine().files.Exists(Rehearsal::VaultFile("C\\Users\\ann\\Documents\\stale.txt")));
  WriteCompareList(house, {kDocuments + "one.txt"});
  house.SetStatus("CompareListCount", "1");
  pause();
  const std::string first = house.Read(house.UserFile("TempCom\\CompareListInput1.txt"));
  WriteCompareList(house, {kDocuments + "two.txt"});
  const std::string second = house.Read(house.UserFile("TempCom\\CompareListInput1.txt"));
  house.PutFile(house.UserFile("TempCom\\CompareListInput2.txt"), second);
  house.PutFile(house.UserFile("TempCom\\CompareListInput1.txt"), first);
  house.SetStatus("CompareListCount", "2");
  pause();
  EXPECT_EQ(house.Result(), "0") << "the number of parts still is the old one";
  house.SetStatus("StatusCheckCount", "2");
  EXPECT_EQ(house.Finish(engine), 0U);
  EXPECT_EQ(house.Result(), "402");
  EXPECT_THAT(house.Lines("ToBackup.txt"), ElementsAre(kDocuments + "one.txt", kDocuments + "two.txt"));
}

TEST(CompareListTest, EndsAbnormallyWhereAnAnnouncedPartIsMissing) {
  Rehearsal house;
  house.transfer().Trf_WriteUserNameDBProfile("DB", "0");
  house.PutLines("atbkupfolderlist.txt", {kDocuments});
  house.PutFile(kDocuments + "one.txt", "1");
  WriteCompareList(house, {kDocuments + "one.txt"});
  house.SetStatus("StatusCheckCount", "2");
  EXPECT_EQ(house.Run(" 51<>"), "-1");
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

TEST(EngineTest, AStopEndsBetweenTwoFilesAndSaysSo) {
  for (const auto& [key, value, want, closing] :
       {std::tuple{"Cancel", "1", "-414", "Backup Canceled"},
        {"Status", "10", "-424", "Backup ended by the hard stop at the Cut Off time"}}) {
    Rehearsal house;
    house.PutFile(std::string{kInstall} + "Deployment.ini", "[Demo]\r\nMillisecondsPerFile=5000\r\n");
    for (int i = 0; i < 200; ++i) house.PutFile(kDocuments + std::to_string(i) + ".txt", "x");
    house.PutLines("atbkupfolderlist.txt", {kDocuments});
    const ProcessHandle engine = house.Start(" 51<>");
    const std::string progress = house.UserFile("BackupProgress.ini");
    const IniKey shown{progress, "BackupProgressInfo", "Backedup Files"};
    for (int i = 0; i < 200 && !house.machine().profiles.ReadString(shown).starts_with("2 of 200"); ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds{20});
    }
    house.SetStatus(key, value);
    house.Finish(engine);
    EXPECT_EQ(house.Result(), want);
    std::size_t copied = 0;
    house.machine().folders.List(Rehearsal::VaultFile("C\\Users\\ann\\Documents"), [&](const FolderEntry&) {
      ++copied;
      return Visit::kContinue;
    });
    EXPECT_THAT(copied, testing::AllOf(testing::Ge(2U), testing::Lt(200U)));
    EXPECT_EQ(house.SessionLines().back(), closing + std::string{"     [Backed up Files : "} +
                                               std::to_string(copied) + ", Size : " + std::to_string(copied) +
                                               " bytes, Failed Files : 0]");
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
