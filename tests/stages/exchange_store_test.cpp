#include "stages/ExchangeStoreStage.h"

#include "stages/exchange_house.h"

namespace ondura {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::ElementsAreArray;

// The server holds two storage groups; the tool dumps 1000 bytes in four seconds.
class StoreHouse : public ExchangeHouse {
 public:
  StoreHouse() : ExchangeHouse("4", "oxexchangeserverbkset;First Group; Second ;  ;OXEXCHANGESERVERBKSET") {
    WriteAccount("APIEXCHANGE", "C:\\Dump\\");
    machine.PutFile(std::string{kData} + "ExchBackupINI.ini",
                    "[BACKEDUP STORAGE GROUPS]\r\nSG1=First Group\r\n");
    OnTool([this](ProgramRun& tool) {
      tool.After(4s, [this] { machine.PutFile("C:\\Dump\\first.edb", std::string(1000, 'x')); });
    });
  }

  void OnTool(const Program& script) { machine.InstallProgram(kStoreTool, script); }
  void PutState(const std::string& state) { machine.PutFile(UserPath("ExchBackupStatus.txt"), state); }
};

TEST(ExchangeStoreStory, TheDumpGoesToTheServerAsOneFolderAndIsDeletedThere) {
  StoreHouse house;
  std::string set, state, keys, header, transferred;
  house.OnTool([&](ProgramRun& tool) {
    set = house.Text("TmpExchangeBackupSet.txt");
    state = house.Bytes("ExchBackupStatus.txt");
    keys = house.Status("Status") + "/" + house.Status("RetValue");
    tool.After(4s, [&] { house.machine.PutFile("C:\\Dump\\first.edb", std::string(1000, 'x')); });
  });
  house.OnCommand(51, [&](ProgramRun&) {
    header = house.Bytes("scheduleData.txt").substr(0, 3);
    transferred = house.Text("TempCom\\CompareListInput1.txt");
    house.WriteResult(402);
  });
  house.machine.PutFile(house.UserPath("ExchangeTraceFile.txt"), "of the last run");
  house.Tick();
  EXPECT_EQ(set, "First Group\r\nSecond\r\n");
  EXPECT_EQ(state, "1\r\n");
  EXPECT_EQ(keys, "1/300");
  EXPECT_EQ(header, "4\r\n");
  EXPECT_THAT(transferred, testing::HasSubstr("C:\\Dump\\first.edb/1000/"));
  EXPECT_THAT(transferred, testing::HasSubstr("C:\\Dump\\ExchBackupINI.ini/"));
  EXPECT_THAT(house.StageTrace(),
              ElementsAre("@ Started Backup of Exchange Server files", "@ Exchange server Path :  C:\\Dump",
                          "\"C:\\ProgramData\\Ondura\\TolmeraProfExchBkp.exe\" 1C:\\Dump", "@ over",
                          "@ Exe not running"));
  const LaunchRequest launch = house.machine.Launches().front();
  EXPECT_EQ(launch.file, ExchangeHouse::kStoreTool);
  EXPECT_EQ(launch.parameters, " 1C:\\Dump");
  EXPECT_EQ(launch.folder, "C:\\ProgramData\\Ondura");
  EXPECT_EQ(launch.show_mode, 0);
  EXPECT_EQ(house.Bytes("ExchBackupStatus.txt"), "0\r\n");
  EXPECT_EQ(house.Bytes("ExchangeTraceFile.txt"), "<none>");
  EXPECT_EQ(house.run().kind_word, " Exchange Server ");
  EXPECT_EQ(house.run().dump_folder, "C:\\Dump");
  EXPECT_FALSE(house.machine.outside().folders.Exists("C:\\Dump")) << "the server has it";
  EXPECT_EQ(house.Code(), "2");
  EXPECT_EQ(house.StatusAfterJob(), "402");
}

TEST(ExchangeStoreStory, TheVersionPicksTheTool) {
  for (const auto& [version, tool] :
       std::map<std::string, std::string_view>{{"2007", ExchangeHouse::kStoreTool64},
                                               {" 2007.0", ExchangeHouse::kStoreTool64},
                                               {"2003", ExchangeHouse::kStoreTool},
                                               {"2010", ExchangeHouse::kStoreTool},
                                               {"20077", ExchangeHouse::kStoreTool},
                                               {"", ExchangeHouse::kStoreTool}}) {
    StoreHouse house;
    house.WriteAccount("ExchVersion", version);
    house.machine.InstallProgram(ExchangeHouse::kStoreTool64, [](ProgramRun& run) { run.ExitAfter(1s, 0); });
    house.Tick();
    EXPECT_EQ(house.machine.Launches().front().file, tool) << version;
  }
}

TEST(ExchangeStoreStory, TheLastLineOfTheBackupSetCountsAndNoLineIsAnEmptyList) {
  for (const auto& [lines, want] : std::map<std::string, std::string>{
           {"OxExchangeServerBkset;Old\r\nOxExchangeServerBksetX;New\r\nC:\\Docs",
            "OxExchangeServerBksetX\r\nNew\r\n"},
           {"C:\\Docs\r\nOxExchBrick;box", ""}}) {
    StoreHouse house;
    house.machine.PutFile(house.UserPath("BackupSetData.txt"), lines);
    house.Tick();
    EXPECT_EQ(house.Text("TmpExchangeBackupSet.txt"), want);
    EXPECT_EQ(house.Code(), "2");
  }
}

struct FailureCase {
  const char* story;
  std::function<void(StoreHouse&)> given;
  std::vector<std::string> trace;  // its last lines
  const char* result_text;
  const char* code;
  const char* total_time;
};

void UserStops(StoreHouse& house) {
  house.OnTool([&house](ProgramRun& tool) {
    tool.NeverEnds();
    tool.After(5s, [&house] { house.WriteProfile("BackupStatus", "Status", "5"); });
  });
}

void ToolEndsWith(StoreHouse& house, const std::string& state) {
  house.OnTool(
      [&house, state](ProgramRun& tool) { tool.After(3s, [&house, state] { house.PutState(state); }); });
}

class StoreFailureTest : public testing::TestWithParam<FailureCase> {};

TEST_P(StoreFailureTest, LeavesItsLogItsKeysAndItsTraces) {
  SCOPED_TRACE(GetParam().story);
  StoreHouse house;
  GetParam().given(house);
  house.Tick();
  house.ExpectFailedEnd(GetParam().code, GetParam().result_text);
  std::vector<std::string> trace = house.StageTrace();
  ASSERT_GE(trace.size(), GetParam().trace.size());
  trace.erase(trace.begin(), trace.end() - static_cast<std::ptrdiff_t>(GetParam().trace.size()));
  EXPECT_THAT(trace, ElementsAreArray(GetParam().trace));
  ASSERT_THAT(house.SessionFiles(), ElementsAre(house.run().session_path));
  const std::string path = house.run().session_path;
  EXPECT_EQ(house.Text("Session\\" + ExchangeHouse::NameOf(path)),
            " \r\nUsername: ann\r\nOperation: Scheduled\r\n" + ExchangeHouse::TimeOf(path) + "  " +
                GetParam().result_text + "\r\nTotal Time" + GetParam().total_time + "\r\n");
  EXPECT_EQ(house.Text("SchStatus.txt"), "View the log to know the status of the backup job.\r\n");
}

constexpr const char* kNoFolder =
    "The temporary path used in the Exchange server backup operation was not found";
constexpr const char* kUnwritable =
    "Unable to continue the Exchange server backup operation. Please check if the disk is full or write "
    "protected.";
constexpr const char* kUnwritableTrace =
    "Unable to continue the Exchange Server Backup operation, please make sure that the folder/drive exists "
    "or the disk is not full or write protected.";
constexpr const char* kUnwritableLogTrace =
    "@ Unable to continue the Exchange server backup operation. Please check if the disk is full or write "
    "protected<log>";
constexpr const char* kCancelled = "The user has aborted the Exchange Server backup operation";
constexpr const char* kCancelledLogTrace = "@ The user has aborted the Exchange Server backup operation<log>";
constexpr const char* kAbortTrace = "@ User aborted the Exchange Server backup";

INSTANTIATE_TEST_SUITE_P(
    Stage, StoreFailureTest,
    testing::Values(
        FailureCase{"no folder",
                    [](StoreHouse& house) { house.WriteAccount("APIEXCHANGE", ""); },
                    {"@ Exchange Temp path not found ",
                     "@ The temporary path used in the Exchange server backup operation was not found<log>"},
                    kNoFolder,
                    "4",
                    ""},
        FailureCase{"a folder that can't be made",
                    [](StoreHouse& house) { house.WriteAccount("APIEXCHANGE", "C:\\no\\such\\"); },
                    {"@ Exchange server Path :  C:\\no\\such\\", kUnwritableTrace, kUnwritableLogTrace},
                    kUnwritable,
                    "3",
                    " 2 seconds"},
        FailureCase{"a write test that fails beside the folder",
                    [](StoreHouse& house) { house.machine.Fail("Files.Write C:\\Dumptmp.mtp"); },
                    {kUnwritableTrace, kUnwritableLogTrace},
                    kUnwritable,
                    "3",
                    " 2 seconds"},
        FailureCase{"a folder of blanks",
                    [](StoreHouse& house) { house.WriteAccount("APIEXCHANGE", "   "); },
                    {"@ Exchange server Path :   ", kUnwritableTrace, kUnwritableLogTrace},
                    kUnwritable,
                    "3",
                    " 2 seconds"},
        FailureCase{"a user who stops the tool",
                    UserStops,
                    {"ScheduleCancelled 1", "Aborted...", "@ over", "@ Exe not running",
                     "@ Operation cancelled by user.", kAbortTrace, kCancelledLogTrace},
                    kCancelled,
                    "3",
                    " 37 seconds"},
        FailureCase{"a host that ends the progress",
                    [](StoreHouse& house) {
                      house.OnTool([&house](ProgramRun& tool) {
                        tool.NeverEnds();
                        tool.After(5s, [&house] { house.Service().controller().EndProgress(); });
                      });
                    },
                    {"ScheduleCancelled 1", "Aborted...", "@ over", "@ Exe not running",
                     "@ Operation cancelled by user.", kAbortTrace, kCancelledLogTrace},
                    kCancelled,
                    "3",
                    " 37 seconds"},
        FailureCase{"a tool that is not there is waited for until its user gives up",
                    [](StoreHouse& house) {
                      house.machine.RemoveProgram(ExchangeHouse::kStoreTool);
                      house.machine.After(600s,
                                          [&house] { house.WriteProfile("BackupStatus", "Status", "5"); });
                    },
                    {kAbortTrace, kCancelledLogTrace},
                    kCancelled,
                    "3",
                    " 10 minutes and 28 seconds"},
        FailureCase{"a tool that says it was cancelled",
                    [](StoreHouse& house) { ToolEndsWith(house, "2"); },
                    {"@ Exe not running", "@ Operation cancelled by user.", kAbortTrace, kCancelledLogTrace},
                    kCancelled,
                    "3",
                    " 35 seconds"},
        FailureCase{"a tool that gives up with a reason",
                    [](StoreHouse& house) {
                      ToolEndsWith(house, "4 and more");
                      house.machine.PutFile(house.UserPath("OxWSchErrorLogFile.txt"),
                                            "No group.\r\nNo more.\r\n");
                    },
                    {"@ Exe not running", "@ Operation aborted.", kAbortTrace, "@ No group.<log>"},
                    "No group.",
                    "3",
                    " 35 seconds"},
        FailureCase{"a tool that gives up without a word",
                    [](StoreHouse& house) { ToolEndsWith(house, "4"); },
                    {"@ Operation aborted.", kAbortTrace, "@ <log>"},
                    "",
                    "3",
                    " 35 seconds"}));

TEST(ExchangeStoreStory, AStopEndsTheEngineAndTellsTheTool) {
  StoreHouse house;
  UserStops(house);
  house.machine.PutProcess(House::kEngine);
  std::string state;
  house.machine.After(15s, [&] { state = house.Bytes("ExchBackupStatus.txt"); });
  house.Tick();
  EXPECT_EQ(state, "2\r\n");
  EXPECT_EQ(house.Bytes("ExchBackupStatus.txt"), "0\r\n");
  EXPECT_FALSE(house.machine.IsRunning("OndClsClient.exe"));
  EXPECT_TRUE(house.machine.IsRunning("TolmeraProfExchBkp.exe")) << "it ends by itself";
}

TEST(ExchangeStoreStory, TheFolderIsWatchedUntilItRestsAndNobodyCanStopThat) {
  StoreHouse house;
  house.machine.journal().RecordAlso("Clock.Sleep");
  house.OnTool([&](ProgramRun& tool) {
    for (int part = 1; part <= 3; ++part) {
      house.machine.After(part * 19s, [&house, part] {
        house.machine.PutFile("C:\\Dump\\deep\\part" + std::to_string(part), "12345");
        house.WriteProfile("BackupStatus", "Status", "5");
      });
    }
    tool.ExitAfter(1s, 0);
  });
  house.Tick();
  EXPECT_EQ(house.Code(), "2");
  EXPECT_EQ(house.machine.CallsMatching("Clock.Sleep 20000").size(), 4U);
}

TEST(ExchangeStoreStory, AnEmptyFolderRestsAtOnceAndIsHandedOver) {
  StoreHouse house;
  house.machine.journal().RecordAlso("Clock.Sleep");
  house.machine.outside().files.Remove(std::string{House::kData} + "ExchBackupINI.ini", Removal::kForce);
  house.OnTool([&](ProgramRun& tool) {
    house.PutState("3");  // a state without a meaning
    tool.ExitAfter(0s, 0);
  });
  house.Tick();
  EXPECT_EQ(house.machine.CallsMatching("Clock.Sleep 20000").size(), 0U);
  EXPECT_TRUE(house.TraceHas("  Selected path :  C:\\Dump"));
  EXPECT_EQ(house.Code(), "2");
}

TEST(ExchangeStoreStory, AResultBesideTheDumpIsNotReplaced) {
  StoreHouse house;
  house.machine.PutFile("C:\\Dump\\ExchBackupINI.ini", "of the tool");
  std::string result;
  house.OnCommand(51, [&](ProgramRun&) {
    result = house.machine.FileBytes("C:\\Dump\\ExchBackupINI.ini").value_or("<none>");
    house.WriteResult(-1);
  });
  house.Tick();
  EXPECT_EQ(result, "of the tool");
  EXPECT_TRUE(house.machine.outside().folders.Exists("C:\\Dump")) << "the server has not got it";
}

TEST(ExchangeStoreStory, OtherProgramsAddToTheListAndCountTheGroups) {
  StoreHouse house;
  Controller& controller = house.Service().controller();
  controller.WriteExchangeBackupSet("One \xC3\xA9");
  controller.WriteExchangeBackupSet("Two");
  EXPECT_EQ(house.Text("TmpExchangeBackupSet.txt"), "One \xC3\xA9\r\nTwo\r\n");
  EXPECT_EQ(controller.FindStorageGroupCount(), 1);
  const std::string file = std::string{House::kData} + "ExchBackupINI.ini";
  house.machine.WriteIni(file, "BACKEDUP STORAGE GROUPS", "SG2", std::string(300, 'g'));
  house.machine.WriteIni(file, "BACKEDUP STORAGE GROUPS", "SG4", "behind a gap");
  EXPECT_EQ(controller.FindStorageGroupCount(), 2);
  EXPECT_EQ(house.Service().transfer().Trf_ReadExchangeProfile("BACKEDUP STORAGE GROUPS", "sg2", file),
            std::string(255, 'g'));
}

}  // namespace
}  // namespace ondura
