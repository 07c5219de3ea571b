#include "stages/ExchangeBrickStage.h"

#include "stages/ExchangeHouse.h"
#include "text/utf16.h"

namespace ondura {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

const std::string kDump = "C:\\Mail\\OxExchBrickBkset";

// A tool that takes three seconds for one mailbox.
class BrickHouse : public ExchangeHouse {
 public:
  BrickHouse() : ExchangeHouse("5", "OXEXCHBRICK; ann ;oxexchbrick; ;") {
    WriteAccount("EXCHBRICK", "C:\\Mail");
    OnTool([this](ProgramRun& tool) {
      tool.After(3s, [this] { machine.PutFile(kDump + "\\ann.pst", "twelve bytes"); });
    });
  }

  void OnTool(const Program& script) { machine.InstallProgram(kBrickTool, script); }
  void PutState(const std::string& state) { machine.PutFile(UserPath("OxExchBrickStatus.txt"), state); }
  std::string State() { return Bytes("OxExchBrickStatus.txt"); }
  std::string Setting(std::string_view key) {
    return machine.ReadIni(UserPath("OxExchBrick.ini"), "Tolmera", key);
  }

  // The log of the job and the tool's, without their four common lines; "<no head>" in front where these
  // are others. The stage begins with the tick.
  std::string MainLog() { return LogBehindHead("Scheduled"); }
  std::string ToolLog() { return LogBehindHead("OxExchBrick"); }
  void ToolLogs(std::string_view line) {
    machine.outside().files.Append(UserPath("Session\\OxExchBrick 11-14-2026 12-30-02.txt"),
                                   ToUtf16(std::string{line} + "\r\n"), IfMissing::kFail);
  }

 private:
  std::string LogBehindHead(const std::string& name) {
    const std::string head = " \r\nUsername: ann\r\nBackup Operation: Scheduled\r\nVersion No: 3.4.1\r\n";
    const std::string text = Text("Session\\" + name + " 11-14-2026 12-30-02.txt");
    return text.starts_with(head) ? text.substr(head.size()) : "<no head>" + text;
  }
};

TEST(ExchangeBrickStory, TheExportGoesToTheServerAsOneFolderAndIsDeletedThere) {
  BrickHouse house;
  house.machine.PutFile("C:\\Mail\\of the last run.txt", "x");
  house.machine.PutProcess(ExchangeHouse::kBrickTool);
  std::string state, keys, transferred;
  bool is_clean = false;
  house.OnTool([&](ProgramRun& tool) {
    state = house.State();
    keys = house.Status("Status") + "/" + house.Status("RetValue");
    is_clean = !house.machine.outside().folders.Exists("C:\\Mail");
    tool.AppearsAfter(100ms);  // a slow start
    tool.After(15s, [&] { house.machine.PutFile(kDump + "\\ann.pst", "twelve bytes"); });
  });
  house.During(51, [&] { transferred = house.Text("TempCom\\CompareListInput1.txt"); });
  house.Tick();
  EXPECT_TRUE(is_clean);
  EXPECT_EQ(state, "1\r\n");
  EXPECT_EQ(keys, "1/400");
  EXPECT_THAT(transferred, testing::HasSubstr(kDump + "\\ann.pst/12/"));
  const LaunchRequest launch = house.machine.Launches().front();
  EXPECT_EQ(launch.file, ExchangeHouse::kBrickTool);
  EXPECT_EQ(launch.parameters, " 1Onduraann2");
  EXPECT_EQ(launch.folder, "C:\\ProgramData\\Ondura");
  EXPECT_EQ(house.Setting("EXCHBRICK"), "C:\\Mail\\");
  EXPECT_EQ(house.Setting("SessionLog"), "Onduraann\\Session\\OxExchBrick 11-14-2026 12-30-02.txt");
  EXPECT_EQ(house.Setting("MainSessionLog"), "Onduraann\\Session\\Scheduled 11-14-2026 12-30-02.txt");
  EXPECT_THAT(house.StageTrace(), ElementsAre("Content of EnumBackupItemSet after the Exchange Brick-Level "
                                              "Mailbox local backup : C:\\Mail\\"));
  EXPECT_EQ(house.MainLog(), "");
  EXPECT_EQ(house.ToolLog(), "");
  EXPECT_EQ(house.run().kind_word, " Exchange Server Brick-Level ");
  EXPECT_FALSE(house.machine.outside().folders.Exists(kDump)) << "the server has it";
  EXPECT_EQ(house.Code(), "2");
  EXPECT_EQ(house.StatusAfterJob(), "402");
}

using Given = std::function<void(BrickHouse&)>;

struct FailureCase {
  std::string story;
  Given given;
  std::string result_text, trace;
  std::string main_log, tool_log;  // after the head
  bool session_cancelled;
};

Given ToolLeaves(const char* state, const char* last_line) {
  return [state, last_line](BrickHouse& house) {
    house.OnTool([&house, state, last_line](ProgramRun& tool) {
      tool.After(3s, [&house, state, last_line] {
        house.PutState(state);
        house.ToolLogs(last_line);
      });
    });
  };
}

void UserStopsTheTool(BrickHouse& house) {
  house.machine.PutProcess(House::kEngine);
  house.OnTool([&house](ProgramRun& tool) {
    tool.NeverEnds();
    tool.After(5s, [&house] { house.UserStops(); });
  });
}

const std::string kTail = "Please view Exchange BrickLevel Backup Log for more information.";
const std::string kUnwritable =
    "Unable to continue the Exchange server bricklevel backup operation. Please check if the disk is full or "
    "write protected";
const std::string kUnwritableTrace =
    "Unable to continue the Exchange Server BrickLevel Backup operation, please make sure that the "
    "folder/drive exists or the disk is not full or write protected.\n@ " +
    kUnwritable + "<log>";
const std::string kUnwritableLine = "11-14-2026 12-30-03  " + kUnwritable + "\r\n";
const std::string kCancelled = "The user has aborted the Exchange Server Brick Level backup operation";
const std::string kCancelledLine = "  The user has aborted the Exchange Server backup operation\r\n";
const std::string kAbortTrace = "@ User aborted the Exchange Server Brick Level backup\n@ ";

TEST(ExchangeBrickStory, AFailureLeavesItsLogsItsKeysAndItsTraces) {
  const FailureCase rows[]{
      FailureCase{"a folder that can't be written",
                  [](BrickHouse& house) { house.machine.Fail("Files.Write C:\\Mail\\tmp.mtp"); }, kUnwritable,
                  kUnwritableTrace, kUnwritableLine, kUnwritableLine, true},
      {"a folder of blanks without the own folder in its place",
       [](BrickHouse& house) { house.WriteAccount("EXCHBRICK", "   "); }, kUnwritable, kUnwritableTrace,
       kUnwritableLine, kUnwritableLine, true},
      {"a line without mailboxes", [](BrickHouse& house) { house.PutBackupSet("OxExchBrick; ;"); },
       "Version No: 3.4.1" + kTail, kAbortTrace + "Version No: 3.4.1<log>", "Version No: 3.4.1\r\n", "",
       false},
      {"a tool with a reason", ToolLeaves(" 3 \r\nx\r\n", "No mailbox."), "No mailbox." + kTail,
       kAbortTrace + "No mailbox.<log>", "No mailbox.\r\n", "No mailbox.\r\n", true},
      {"a tool that was cancelled", ToolLeaves("2", "Stopped."), kCancelled + ".",
       kAbortTrace + kCancelled + "<log>", "\r\n", "Stopped.\r\n11-14-2026 12-30-22" + kCancelledLine, true},
      {"a user's stop", UserStopsTheTool, kCancelled + ".",
       "ScheduleCancelled 1\nAborted...\n" + kAbortTrace + kCancelled + "<log>", "\r\n",
       "11-14-2026 12-30-24" + kCancelledLine, true}};
  for (const FailureCase& row : rows) {
    SCOPED_TRACE(row.story);
    BrickHouse house;
    row.given(house);
    house.Tick();
    house.ExpectFailedEnd("3", row.result_text, row.trace);
    EXPECT_EQ(house.run().session_path, house.UserPath("Session\\Scheduled 11-14-2026 12-30-02.txt"));
    EXPECT_EQ(house.MainLog(), row.main_log);
    EXPECT_EQ(house.ToolLog(), row.tool_log);
    EXPECT_EQ(house.SessionFiles().size(), 2U);
    EXPECT_FALSE(house.machine.IsRunning("OxExchBrick.exe") || house.machine.IsRunning("OndClsClient.exe"));
    EXPECT_EQ(row.story == "a user's stop", house.State() == "2\r\n");
    EXPECT_THAT(house.Text("SchStatus.txt"),
                testing::StartsWith(row.session_cancelled ? "All your files/folders could not be backed up as"
                                                          : "View the log to know the status"));
  }
}

TEST(ExchangeBrickStory, WithoutAFolderTheJobIsRefusedWithAnOrdinaryLog) {
  BrickHouse house;
  house.WriteAccount("EXCHBRICK", "");
  house.Tick();
  const std::string text =
      "The temporary path used in the Exchange server brick level backup operation was not found";
  house.ExpectFailedEnd("4", text, "@ Exchange Brick Level Backup Temp path not found \n@ " + text + "<log>",
                        "Total Time\r\n");
}

TEST(ExchangeBrickStory, OnlyAToolThatWasStartedIsAwaitedWhateverTheHostEnds) {
  for (const bool starts : {true, false}) {
    BrickHouse house;
    house.OnTool([&house](ProgramRun& tool) {
      tool.After(1s, [&house] { house.Service().controller().EndProgress(); });
      tool.After(3s, [&house] { house.machine.PutFile(kDump + "\\ann.pst", "x"); });
    });
    if (!starts) house.machine.RemoveProgram(ExchangeHouse::kBrickTool);
    house.Tick();
    EXPECT_EQ(house.TraceHas("Content of EnumBackupItemSet after the Exchange"), starts);
    EXPECT_EQ(house.StageTrace().empty(), !starts);
    EXPECT_EQ(house.State(), "1\r\n");
    EXPECT_EQ(house.TraceHas("  Selected path :  " + kDump), !starts)
        << "the end stops the job after the stage";
  }
}

TEST(ExchangeBrickStory, OtherProgramsReadAndWriteTheFilesOfTheTool) {
  BrickHouse house;
  Controller& controller = house.Service().controller();
  EXPECT_EQ(controller.ReadFirstBit("C:\\none.txt"), "");
  house.machine.PutFile("C:\\first.txt", "  2 \r\n3");
  EXPECT_EQ(controller.ReadFirstBit("C:\\first.txt"), "2");
  controller.WriteExchBrickProfile("EXCHBRICK", "D:\\x\\");
  EXPECT_EQ(house.Setting("EXCHBRICK"), "D:\\x\\");
  house.machine.Fail("ProfileFiles.Write*SessionLog*");
  controller.WriteExchBrickProfile("SessionLog", "y");
  EXPECT_TRUE(house.TraceHas("SessionLog")) << "a lost write can be seen";
}

TEST(ExchangeBrickStory, ExportsToTheConfiguredFolderOrItsOwnAndCleansNoWholeShare) {
  const std::string own = std::string{House::kData} + "EXCHANGEBRICKTEMP";
  // Of three blanks the profile gives one: what is between quotation marks in its shifted form.
  for (const auto& [folder, want, handed_over] :
       {std::tuple{"   ", own, "  Selected path :   \\OxExchBrickBkset"},
        {"\\\\server\\share", "\\\\server\\share",
         "  Selected path :  \\\\server\\share\\OxExchBrickBkset"}}) {
    BrickHouse house;
    house.WriteAccount("EXCHBRICK", folder);
    house.machine.PutFolder(own);
    house.machine.PutFile("\\\\server\\share\\letters.txt", "dear");
    house.Tick();
    EXPECT_EQ(house.Setting("EXCHBRICK"), want + "\\");
    EXPECT_TRUE(house.TraceHas(handed_over));
    EXPECT_EQ(house.machine.FileBytes("\\\\server\\share\\letters.txt"), "dear");
  }
}

TEST(ExchangeBrickStory, TheStatusFileMarksTheJobForWhoeverAsks) {
  for (const auto& [state, mode, is_cancelled, error_text] : {std::tuple{"1", 0, false, ""},
                                                              {"2", 1, true, ""},
                                                              {"2", 0, true, ""},
                                                              {"3", 1, true, "Operation aborted."},
                                                              {"33", 0, false, ""}}) {
    BrickHouse house;
    house.PutState(state);
    house.Service().controller().CheckForExchBrickCancel(mode);
    EXPECT_EQ(house.run().cancelled, is_cancelled) << state;
    EXPECT_EQ(house.Service().web().ErrorText(), error_text) << state;
  }
}

}  // namespace
}  // namespace ondura
