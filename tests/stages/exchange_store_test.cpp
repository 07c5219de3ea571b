#include "stages/ExchangeStoreStage.h"

#include "stages/ExchangeHouse.h"

namespace ondura {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

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

  std::string state_after_stop;

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
  house.During(51, [&] {
    header = house.Bytes("scheduleData.txt").substr(0, 3);
    transferred = house.Text("TempCom\\CompareListInput1.txt");
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
  constexpr std::string_view k32 = ExchangeHouse::kStoreTool;
  constexpr std::string_view k64 = ExchangeHouse::kStoreTool64;
  for (const auto& [version, tool] : std::map<std::string, std::string_view>{
           {"2007", k64}, {" 2007.0", k64}, {"2003", k32}, {"2010", k32}, {"20077", k32}, {"", k32}}) {
    StoreHouse house;
    house.WriteAccount("ExchVersion", version);
    house.machine.InstallProgram(k64, [](ProgramRun& run) { run.ExitAfter(1s, 0); });
    house.Tick();
    EXPECT_EQ(house.machine.Launches().front().file, tool) << version;
  }
}

using Given = std::function<void(StoreHouse&)>;

struct FailureCase {
  std::string story;
  Given given;
  std::string code, result_text;
  std::string trace;  // its last lines
  std::string total_time;
};

Given Folder(const char* path) {
  return [path](StoreHouse& house) { house.WriteAccount("APIEXCHANGE", path); };
}

Given ToolLeaves(const char* state, const char* reason) {
  return [state, reason](StoreHouse& house) {
    house.OnTool(
        [&house, state](ProgramRun& tool) { tool.After(3s, [&, state] { house.PutState(state); }); });
    if (*reason != '\0') house.machine.PutFile(house.UserPath("OxWSchErrorLogFile.txt"), reason);
  };
}

void UserStops(StoreHouse& house) { house.UserStops(); }
void HostStops(StoreHouse& house) { house.Service().controller().EndProgress(); }

Given StoppedBy(void (*stop)(StoreHouse&)) {
  return [stop](StoreHouse& house) {
    house.OnTool([&house, stop](ProgramRun& tool) {
      tool.NeverEnds();
      tool.After(5s, [&house, stop] { stop(house); });
      tool.After(15s, [&house] { house.state_after_stop = house.Bytes("ExchBackupStatus.txt"); });
    });
    house.machine.PutProcess(House::kEngine);
  };
}

const std::string kNoFolder = "The temporary path used in the Exchange server backup operation was not found";
const std::string kUnwritable =
    "Unable to continue the Exchange server backup operation. Please check if the disk is full or write "
    "protected";
const std::string kUnwritableTrace =
    "\nUnable to continue the Exchange Server Backup operation, please make sure that the folder/drive "
    "exists or the disk is not full or write protected.\n@ " +
    kUnwritable + "<log>";
const std::string kCancelled = "The user has aborted the Exchange Server backup operation";
const std::string kAbortTrace = "@ User aborted the Exchange Server backup\n@ ";
const std::string kCancelledTrace =
    "\n@ over\n@ Exe not running\n@ Operation cancelled by user.\n" + kAbortTrace + kCancelled + "<log>";
const std::string kToolAbortedTrace = "\n@ over\n@ Exe not running\n@ Operation aborted.\n" + kAbortTrace;
const std::string kStoppedTrace = "\nScheduleCancelled 1\nAborted..." + kCancelledTrace;

TEST(ExchangeStoreStory, AFailureLeavesItsLogItsKeysAndItsTraces) {
  const FailureCase rows[]{
      FailureCase{"no folder", Folder(""), "4", kNoFolder,
                  "@ Exchange Temp path not found \n@ " + kNoFolder + "<log>", ""},
      {"a folder that can't be made", Folder("C:\\no\\such\\"), "3", kUnwritable + ".",
       "@ Exchange server Path :  C:\\no\\such\\" + kUnwritableTrace, " 2 seconds"},
      {"a full disk beside the folder",
       [](StoreHouse& house) { house.machine.Fail("Files.Write C:\\Dumptmp.mtp"); }, "3", kUnwritable + ".",
       "@ Exchange server Path :  C:\\Dump" + kUnwritableTrace, " 2 seconds"},
      {"a user's stop", StoppedBy(UserStops), "3", kCancelled, kStoppedTrace, " 37 seconds"},
      {"a host's stop", StoppedBy(HostStops), "3", kCancelled, kStoppedTrace, " 37 seconds"},
      {"a tool that was cancelled", ToolLeaves("2", ""), "3", kCancelled, kCancelledTrace, " 35 seconds"},
      {"a tool with a reason", ToolLeaves("4 and more", "No group.\r\nNo more.\r\n"), "3", "No group.",
       kToolAbortedTrace + "No group.<log>", " 35 seconds"},
      {"a tool without a word", ToolLeaves("4", ""), "3", "", kToolAbortedTrace + "<log>", " 35 seconds"}};
  for (const FailureCase& row : rows) {
    SCOPED_TRACE(row.story);
    StoreHouse house;
    row.given(house);
    house.Tick();
    house.ExpectFailedEnd(row.code, row.result_text, row.trace, "Total Time" + row.total_time + "\r\n");
    const bool is_stopped = row.trace == kStoppedTrace;
    EXPECT_EQ(house.state_after_stop, is_stopped ? "2\r\n" : "");
    EXPECT_EQ(house.machine.IsRunning("TolmeraProfExchBkp.exe"), is_stopped) << "it ends by itself";
    EXPECT_FALSE(house.machine.IsRunning("OndClsClient.exe"));
  }
}

TEST(ExchangeStoreStory, TheFolderIsWatchedUntilItRestsAndNobodyCanStopThat) {
  StoreHouse house;
  house.machine.journal().RecordAlso("Clock.Sleep");
  house.OnTool([&](ProgramRun& tool) {
    for (int part = 1; part <= 3; ++part) {
      house.machine.After(part * 19s, [&house, part] {
        house.machine.PutFile("C:\\Dump\\deep\\part" + std::to_string(part), "12345");
        house.UserStops();
      });
    }
    tool.ExitAfter(1s, 0);
  });
  house.Tick();
  EXPECT_EQ(house.Code(), "2");
  EXPECT_EQ(house.machine.CallsMatching("Clock.Sleep 20000").size(), 4U);
}

struct QuietCase {
  std::string story;
  Given given;
  std::string want_trace;
  std::string want_set = "First Group\r\nSecond\r\n";
};

Given BackupSet(const char* lines) {
  return [lines](StoreHouse& house) { house.PutBackupSet(lines); };
}

TEST(ExchangeStoreStory, WhatIsMissingHoldsNobodyUpAndTheFolderGoesOutAsItIs) {
  const std::string handed_over = "  Selected path :  C:\\Dump";
  for (const QuietCase& row :
       {QuietCase{"no tool",
                  [](StoreHouse& house) { house.machine.RemoveProgram(ExchangeHouse::kStoreTool); },
                  " The Exchange backup tool could not be started"},
        {"an empty folder, and a state without a meaning",
         [](StoreHouse& house) {
           house.machine.journal().RecordAlso("Clock.Sleep");
           house.machine.outside().files.Remove(std::string{House::kData} + "ExchBackupINI.ini",
                                                Removal::kForce);
           house.OnTool([&house](ProgramRun& tool) {
             house.PutState("3");
             tool.ExitAfter(0s, 0);
           });
         },
         handed_over},
        {"two lines: the last counts",
         BackupSet("OxExchangeServerBkset;Old\r\nOxExchangeServerBksetX;New\r\nC:\\Docs"), handed_over,
         "OxExchangeServerBksetX\r\nNew\r\n"},
        {"no line", BackupSet("C:\\Docs\r\nOxExchBrick;box"), handed_over, ""}}) {
    SCOPED_TRACE(row.story);
    StoreHouse house;
    row.given(house);
    house.Tick();
    EXPECT_TRUE(house.TraceHas(row.want_trace));
    EXPECT_EQ(house.Text("TmpExchangeBackupSet.txt"), row.want_set);
    EXPECT_THAT(house.machine.CallsMatching("Clock.Sleep 20000"), testing::IsEmpty());
    EXPECT_EQ(house.Code(), "2");
  }
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
