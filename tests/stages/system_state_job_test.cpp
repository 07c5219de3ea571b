// Jobs for the System State, from the tick to the end.

#include "platform/forwarding.h"
#include "stages/SystemStateHouse.h"
#include "text/utf16.h"

namespace ondura {
namespace {

using namespace std::chrono_literals;
using rehearsal::SystemBackupOutcome;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr const char* kDone = "Information : [@ : ] Successfully Completed system state backup to '";
constexpr const char* kFailed = "Information : [@ : ] Failed to continue System state backup.\r\n";

TEST(SystemStateJob, DumpsHidesTheToolAndHandsItsFileToTheEngine) {
  SystemStateHouse house;
  house.machine.PutFolder(SystemStateHouse::kDump);
  house.machine.disk().SetShortPath("C:\\Dump State", "C:\\DUMPST~1");
  std::string pid_file, ret_value;
  house.InstallTool(5s, SystemBackupOutcome::kVerified, [&](ProgramRun& run) {
    pid_file = house.Bytes("NTBPIDFile.dat");
    EXPECT_EQ(pid_file, std::to_string(run.id()));
    ret_value = house.Status("RetValue");
    house.Service().controller().EndProgress();  // forgotten after the dump
  });
  house.During(51, [&] {
    EXPECT_THAT(house.machine.FileBytes("C:\\Dump State\\OxSystemState.bkf").value_or(""),
                StartsWith("System State of SIMULATED\r\n"));
  });
  house.Tick();
  const LaunchRequest launch = house.machine.Launches().front();
  EXPECT_EQ(launch.file, "NTBACKUP");
  EXPECT_THAT(launch.parameters, StartsWith("backup systemstate /f \"C:\\DUMPST~1\\OxSystemState.bkf\" /J "));
  EXPECT_EQ(launch.show_mode, 0);
  EXPECT_EQ(house.times_hidden, 8) << "both windows, at each of the four looks";
  EXPECT_NE(pid_file, "");
  EXPECT_EQ(house.Bytes("NTBPIDFile.dat"), "<none>") << "the tool is watched no longer";
  EXPECT_EQ(ret_value, "200");
  EXPECT_EQ(house.StageLog(), kDone + std::string{"C:\\Dump State\\'.\r\n"});
  EXPECT_THAT(house.Selected(), StartsWith("C:\\Dump State\\OxSystemState.bkf/"));
  EXPECT_FALSE(house.machine.outside().folders.Exists("C:\\Dump State")) << "sent, and so thrown away";
  EXPECT_EQ(house.LastMail().at(2), "2");
  EXPECT_EQ(house.LastMail().at(7), " System State ");
  EXPECT_EQ(house.NextTime(), "11-15-2026 12:30:00");
}

TEST(SystemStateJob, TracesItsWayAndKeepsTheVeryBytesOfTheLog) {
  SystemStateHouse house;
  house.machine.surroundings().version = {2, 5, 1, true};
  house.Tick();
  const std::string log = R"(C:\Users\Default\AppData\Local\Microsoft\Windows NT\NTBackup\data\backup01.log)";
  const std::string copy = R"(C:\ProgramData\Ondura\Onduraann\session\OxSystemState @.txt)";
  ASSERT_EQ(house.SessionFiles().size(), 1U);
  EXPECT_EQ(StageHouse::WithoutTimes(ReplaceAll(house.SessionFiles()[0], "Session", "session")), copy);
  EXPECT_EQ(house.machine.FileBytes(house.SessionFiles()[0]), house.machine.FileBytes(log));
  std::vector<std::string> expected{
      "@  Started the system state backup to this directory - 'C:\\Dump State\\'",
      "@ Started Backup of System state backup C:\\Dump State\\",
      "@ Started system state backup to 'C:\\Dump State\\ ' ",
      ("NTBACKUP system state cmd line::NTBACKUP backup systemstate /f \"C:\\Dump State\\OxSystemState.bkf\" "
       "/J \"OxSystemState @\" /V:yes  /L:s  /R:no  /RS:no "),
      "Enter CheckIfBackupComplete",
      "System state data backup is in progress",
      "Exit CheckIfBackupComplete",
      "Enter GetLogErrorString",
      "@",
      R"(@ spath C:\Users\Default\AppData\Local)",
      "@ sLogfile backup01.log",
      "@ slogfilePath " + log,
      "Exit GetLogErrorString Path of ntbackup logs : " + copy,
      "Enter CheckLogError",
      "Enter CheckForErrorString",
      "System state backup log starts"};
  const rehearsal::SystemBackupOrder order{"C:\\Dump State\\OxSystemState.bkf", "OxSystemState @"};
  for (const std::string& line : LinesOf(rehearsal::SystemBackup::LogText(order, true, true))) {
    expected.push_back(line);
  }
  expected.insert(expected.end(), {"", "System state backup log ends", "Exit CheckForErrorString :  True",
                                   "Exit CheckLogError return with True", "Exit LaunchNtbackup"});
  EXPECT_EQ(house.StageTrace(), expected);
}

using Given = std::function<void(SystemStateHouse&)>;

Given ToolLeaves(SystemBackupOutcome outcome, const std::function<void(ProgramRun&)>& meanwhile = {}) {
  return [=](SystemStateHouse& house) { house.InstallTool(5s, outcome, meanwhile); };
}

using FailedDump = std::tuple<std::string, Given, bool, std::string>;

// No failed dump stops the job: what is there is sent.
TEST(SystemStateJob, GoesOnToTheTransferAfterAFailedDump) {
  const std::string no_log = "Exit CheckLogError return with File does not exists Path:";
  for (const auto& [story, given, leaves_file, trace] : {
           FailedDump{"the log says nothing of a verified copy", ToolLeaves(SystemBackupOutcome::kUnverified),
                      true, "Exit CheckLogError return with False"},
           {"the tool leaves no log", ToolLeaves(SystemBackupOutcome::kWithoutLog), true, no_log},
           {"the tool dies", ToolLeaves(SystemBackupOutcome::kVerified, [](ProgramRun& run) { run.Exit(7); }),
            false, no_log},
           {"the system has no such tool any more",
            [](SystemStateHouse& house) { house.machine.RemoveProgram(SystemStateHouse::kTool); }, false,
            no_log},
           {"the account has no folder for local data",
            [](SystemStateHouse& house) { house.machine.Fail("Drives.LocalDataFolder"); }, true,
            "Exit GetLogErrorString Path of ntbackup logs : "},
       }) {
    SCOPED_TRACE(story);
    SystemStateHouse house;
    given(house);
    house.Tick();
    EXPECT_EQ(house.StageLog(), kFailed);
    EXPECT_TRUE(house.TraceHas(trace));
    EXPECT_EQ(house.TraceHas(" : There is NO System state backup files "), !leaves_file);
    EXPECT_THAT(house.Commands(), ElementsAre(24, 51, 16));
    EXPECT_EQ(house.Selected().starts_with("C:\\Dump State\\OxSystemState.bkf/"), leaves_file);
    EXPECT_EQ(house.LastMail().at(2), "2");
    EXPECT_EQ(house.Bytes("NTBPIDFile.dat"), "<none>");
  }
}

TEST(SystemStateJob, WithoutAccessToTheFolderItFailsBeforeTheDump) {
  SystemStateHouse house;
  house.PutBackupSet("OXSYSTEMSTATEBACKUP;" + std::string{SystemStateHouse::kDump});
  // Without a backslash in between, the test file is the folder's neighbour.
  house.machine.Fail("Files.Write C:\\Dump Statetmp.mtp");
  house.Tick();
  const std::string result =
      "Unable to continue the system state backup operation. Please check if the disk is full or write "
      "protected";
  const std::string detail =
      "Unable to continue the System State Backup operation, Ensure that the folder/drive exists or the disk "
      "is not full or write protected.";
  const std::string trace =
      "\n@ Unable to continue the system state backup operation. Ensure that the disk is full or write "
      "protected<log>";
  house.ExpectFailedEnd("3", result, "@ " + detail + trace, "");
  EXPECT_EQ(house.StageLog(), "Error       : [@ : ] " + detail + "\r\n");
  EXPECT_EQ(house.Status("RetValue"), "200");
}

TEST(SystemStateJob, AStopDuringTheDumpEndsTheToolButNotTheJob) {
  SystemStateHouse house;
  house.InstallTool(10s, SystemBackupOutcome::kVerified, [&](ProgramRun&) { house.UserStops(); });
  std::string status;
  house.During(24, [&] {
    status = house.Status("Status");
    house.machine.PutFile(house.UserPath("DLLOutput1.txt"), "11911\r\nlocalhost\r\n");
  });
  house.Service();
  house.machine.ClearCalls();
  house.Tick();
  EXPECT_EQ(status, "1") << "the connection's own, over the \"0\" of the stop";
  EXPECT_THAT(house.machine.CallsMatching("ProfileFiles.WriteString *[BackupStatus] Status=0$"),
              testing::SizeIs(1));
  EXPECT_FALSE(house.machine.IsRunning("ntbackup.exe"));
  EXPECT_THAT(house.machine.CallsMatching("Processes.OpenById *"), testing::Each(HasSubstr("OpenById 10")))
      << "ids begin at 1000, so a smaller number is that of a handle";
  EXPECT_THAT(house.StageTrace(),
              testing::IsSupersetOf({"Sent close message to ntBackup exe", "Exit CheckIfBackupComplete"}));
  EXPECT_FALSE(house.TraceHas("Enter GetLogErrorString")) << "no log is read";
  EXPECT_EQ(house.Bytes("STBTraceFile.txt"), "<none>");
  EXPECT_EQ(house.Bytes("NTBPIDFile.dat"), "<none>");
  EXPECT_THAT(house.SessionFiles(), IsEmpty());
  EXPECT_THAT(house.Commands(), ElementsAre(24, 51, 16));
}

// Asks for the abort right after the first look at Status that the stage takes after its dump.
class StopBetweenTheTests : public ForwardingProfileFiles {
 public:
  using ForwardingProfileFiles::ForwardingProfileFiles;

  std::string ReadString(const IniKey& key) override {
    std::string value = ForwardingProfileFiles::ReadString(key);
    if (is_armed_ && EqualsIgnoringCase(key.key, "Status")) {
      is_armed_ = false;
      ForwardingProfileFiles::WriteString(key, "5");
    }
    return value;
  }

  bool WriteString(const IniKey& key, std::string_view value) override {
    if (EqualsIgnoringCase(key.key, "RetValue") && value == "200") is_armed_ = true;
    return ForwardingProfileFiles::WriteString(key, value);
  }

 private:
  bool is_armed_ = false;
};

TEST(SystemStateJob, OnlyAStopBetweenTheTwoTestsEndsTheJob) {
  SystemStateHouse house;
  house.machine.PutProcess("C:\\elsewhere\\ntbackup.exe");
  house.WriteProfile("BackupStatus", "DLLStatus", "7");
  StopBetweenTheTests profiles(house.machine.machine().profiles);
  Component component(With(house.machine.machine(), profiles));
  component.controller().cont_InitialSch(House::kInstall);
  component.controller().Cont_CheckStandardRunning();
  const std::string result = "The user has aborted the system state backup";
  EXPECT_EQ(house.SessionLog(), StageHouse::FailedLog(result, ""));
  EXPECT_EQ(house.StageLog(), "Error       : [@ : ] User aborted/canceled the System State Backup.\r\n");
  EXPECT_TRUE(house.TraceHas(" User aborted the System State Backup\r\n"));
  EXPECT_EQ(house.LastMail().at(2), "3");
  EXPECT_EQ(house.LastMail().at(4), house.SessionFiles().front());
  EXPECT_EQ(house.LastMail().at(5), result);
  EXPECT_EQ(house.StatusAfterJob(), "3");
  EXPECT_EQ(house.Status("DLLStatus"), "7") << "not this stage's to write";
  EXPECT_EQ(house.Text("SchStatus.txt"), "") << "the end routine does not run";
  EXPECT_THAT(house.Commands(), IsEmpty());
}

TEST(SystemStateJob, FindsTheFolderInTheBackupSet) {
  const std::string own = "C:\\ProgramData\\Ondura\\SYSSTATETEMP";
  for (const auto& [lines, folder] : std::map<std::string, std::string>{
           {"", own},
           {"OXSYSTEMSTATEBACKUP", own},
           {"OxSystemStateBackup;\\;", own},
           {"OXSYSTEMSTATEBACKUP; C:\\one ; C:\\two ; ;oxsystemstatebackup", "C:\\two"},
           {"OXSYSTEMSTATEBACKUP;C:\\one\r\nC:\\x\r\noxsystemstatebackup2;C:\\two", "C:\\two"}}) {
    SystemStateHouse house;
    house.PutBackupSet(lines);
    if (folder == "C:\\two") house.Answer(51, 426);
    house.Tick();
    EXPECT_TRUE(house.TraceHas("Started system state backup to '" + folder + " ' ")) << lines;
    EXPECT_EQ(house.StageLog(), kDone + folder + "\\'.\r\n") << lines;
  }
}

TEST(SystemStateJob, AForeignToolAndAWholeDriveAreLeftAloneAndTheOlderFileIsSent) {
  SystemStateHouse house;
  house.PutBackupSet("OXSYSTEMSTATEBACKUP;D:\\");
  house.machine.PutProcess("C:\\elsewhere\\NTBackup.exe");
  house.machine.PutFile("D:\\OxSystemState.bkf", "older");
  house.machine.PutFile("D:\\letters\\mine.txt", "dear");
  house.Tick();
  EXPECT_FALSE(house.TraceHas("Started system state backup to '"));
  EXPECT_TRUE(house.machine.IsRunning("ntbackup.exe"));
  EXPECT_EQ(house.Bytes("STBTraceFile.txt"), "<none>");
  EXPECT_THAT(house.Selected(), StartsWith("D:\\OxSystemState.bkf/"));
  EXPECT_EQ(house.run().dump_folder, "D:") << "the base path";
  EXPECT_EQ(house.machine.FileBytes("D:\\letters\\mine.txt"), "dear");
}

}  // namespace
}  // namespace ondura
