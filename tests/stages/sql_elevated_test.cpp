// What the elevated host does for SQL dumps, and the single dump.

#include "stages/SqlHouse.h"

namespace ondura {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::IsEmpty;
using testing::SizeIs;

TEST(SqlElevated, DumpsOnlyWhenAskedAndAnswersAlsoWithoutDatabases) {
  SqlHouse house;
  Controller& host = house.Twin().controller();
  for (const std::string value : {"", "0", "100"}) {
    house.WriteProfile("BackupStatus", "LocalBackup", value);
    host.Cont_LaunchAdminProcessSQL();
    EXPECT_EQ(house.Status("LocalBackup"), value);
  }
  EXPECT_EQ(house.machine.Elapsed(), 0s);
  house.PutBackupSet("C:\\Docs");
  house.WriteProfile("BackupStatus", "LocalBackup", "1");
  host.Cont_LaunchAdminProcessSQL();
  EXPECT_EQ(house.Status("LocalBackup"), "100");
  EXPECT_EQ(house.Data("SQLBackupData.txt"), "");
  EXPECT_THAT(house.machine.Launches(), IsEmpty());
}

TEST(SqlElevated, LetsARunningDumpEndFirstAndIsNotEnteredTwice) {
  SqlHouse house;
  house.IsVista(true);
  house.PutBackupSet("SQLSERVERBACKUP;sales");
  house.WriteProfile("BackupStatus", "LocalBackup", "1");
  Component& host = house.Twin();
  host.installation().ProductNumber = 2;
  const ProcessId foreground = house.machine.PutProcess(SqlHouse::kTool);
  int looks = 0;
  house.machine.OnPump([&] {
    if (house.Data("ScheduleTraceFileService.txt") == "<none>") return;
    if (++looks == 5) house.machine.EndProcess(foreground);
    EXPECT_TRUE(looks >= 5 || house.machine.Launches().empty());
    host.controller().Cont_LaunchAdminProcessSQL();
  });
  host.controller().Cont_LaunchAdminProcessSQL();
  EXPECT_THAT(house.machine.Launches(), SizeIs(1));
  EXPECT_EQ(house.Data("SQLBackupData.txt"), "C:\\Dumps\\[sales].dmp\r\n");
  EXPECT_THAT(house.Trace(), Contains("calling SQL BackupToDisk: Ondura_sqlbackup.exe"));
}

enum class Stop { kNone, kByUser, kByHost };

struct RequestCase {
  std::string story;
  const char* status;  // null for no file
  bool has_command;
  Stop stop;
  std::size_t launches;
  std::string status_after, tool_status;
  bool is_foreign = false;
};

TEST(SqlElevated, ServesARequestOnce) {
  for (const RequestCase& row :
       {RequestCase{"nobody asks", nullptr, true, Stop::kNone, 0, "<none>", "<none>"},
        {"nothing is to be done", "0\r\n", true, Stop::kNone, 0, "0\r\n", "<none>"},
        {"it was served before", "2\r\n", true, Stop::kNone, 0, "2\r\n", "<none>"},
        {"without a command nothing starts", " 1 \r\n", false, Stop::kNone, 0, "2\r\n", "<none>"},
        {"a command of a person without rights is not obeyed", "1\r\n", true, Stop::kNone, 0, "2\r\n",
         "<none>", true},
        {"the tool is awaited", "1\r\n", true, Stop::kNone, 1, "2\r\n", "<none>"},
        {"the user's stop goes on to the tool", "1\r\n", true, Stop::kByUser, 1, "2\r\n", "2\r\n"},
        {"the host's stop too", "1\r\n", true, Stop::kByHost, 1, "2\r\n", "2\r\n"}}) {
    SCOPED_TRACE(row.story);
    SqlHouse house;
    Controller& host = house.Twin().controller();
    const std::string folder = std::string{House::kData} + "OxWin\\";
    const std::string command = std::string{SqlHouse::kTool} + " 1 srv [sales] u p C:\\Dumps";
    if (row.status != nullptr) house.machine.PutFile(folder + "SqlLaunchStatus.txt", row.status);
    if (row.has_command) house.machine.PutFile(folder + "SQlLaunchCmd.txt", command);
    house.machine.InstallProgram(SqlHouse::kTool, [](ProgramRun& run) {
      run.AppearsAfter(2500ms);
      run.ExitAfter(20s, 0);
    });
    if (row.is_foreign) house.machine.disk().SetForeign(folder + "SQlLaunchCmd.txt");
    house.machine.OnPump([&] { host.Cont_LaunchSQlAdminProcess(); });
    house.machine.After(3s, [&] {
      if (row.stop == Stop::kByUser) house.UserStops();
      if (row.stop == Stop::kByHost) host.EndProgress();
    });
    for (int call = 0; call < 2; ++call) host.Cont_LaunchSQlAdminProcess();
    EXPECT_THAT(house.machine.Launches(), SizeIs(row.launches));
    EXPECT_EQ(house.Data("OxWin\\SqlLaunchStatus.txt"), row.status_after);
    EXPECT_EQ(house.Data("OxWin\\SQLScheduleStatus.txt"), row.tool_status);
    EXPECT_EQ(house.machine.IsRunning("tolmera_sqlbackup.exe"), row.stop != Stop::kNone);
    for (const LaunchRequest& tool : house.machine.Launches())
      EXPECT_EQ(tool.file + " " + tool.parameters, command);
  }
}

TEST(SqlDump, FillsInWhatIsNotConfigured) {
  SqlHouse house;
  ServiceContext& context = house.Service().context();
  context.installation().CurrentUser = "ann";
  StageSupport support(context.job, context.backup_set);
  SqlDump dump(context.job, support, context.backup_set);
  house.WriteAccount("SQLTEMP", "");
  house.WriteAccount("SerNM", "  ");
  house.WriteAccount("SqlUN", "sa");
  EXPECT_TRUE(dump.BackupToDisk("sales"));
  house.WriteAccount("SQLTEMP", "C:\\My Dumps");
  house.WriteAccount("SerNM", "my server");
  house.machine.PutFile("C:\\My Dumps\\[].dmp", "");
  house.machine.PutFile("C:\\My Dumps\\[hr].dmp", "of last week");
  house.machine.RemoveProgram(SqlHouse::kTool);
  EXPECT_TRUE(dump.BackupToDisk("hr")) << "no tool";
  const std::string files =
      " C:\\ProgramData\\Ondura\\OXWIN SQLBackupLog.txt SQLErrorBackupFile.txt SQLScheduleStatus.txt "
      "SQLBackupTraceFile.txt";
  EXPECT_EQ(house.machine.Launches().at(0).parameters,
            "1 (local) [sales] sa \"\" C:\\ProgramData\\Ondura\\SQLTEMP" + files);
  EXPECT_EQ(house.machine.Launches().at(1).parameters, "1 my server [hr] sa \"\" C:\\My Dumps" + files);
  EXPECT_THAT(
      context.backup_set.BackupSetLines,
      testing::ElementsAre("C:\\ProgramData\\Ondura\\SQLTEMP\\[sales].dmp", "C:\\My Dumps\\[hr].dmp"));
  EXPECT_EQ(house.machine.FileBytes("C:\\My Dumps\\[].dmp"), std::nullopt);
  EXPECT_EQ(house.machine.FileBytes("C:\\My Dumps\\[hr].dmp"), "of last week");
}

TEST(StageSupport, TheWriteTestStandsBesideAFolderWithoutABackslash) {
  SqlHouse house;
  ServiceContext& context = house.Service().context();
  StageSupport support(context.job, context.backup_set);
  EXPECT_TRUE(support.CanWriteTo("C:\\Nowhere"));
  EXPECT_FALSE(support.CanWriteTo("C:\\Nowhere\\"));
  EXPECT_THAT(house.machine.CallsMatching("*Remove*C:\\Nowheretmp.mtp*"), SizeIs(1));
  EXPECT_EQ(house.machine.FileBytes("C:\\Nowheretmp.mtp"), std::nullopt);
}

}  // namespace
}  // namespace ondura
