// What the elevated host does for SQL dumps, and the single dump.

#include <gmock/gmock.h>

#include "sql_house.h"

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
  house.PutBackupSet("C:\\Docs\r\n");
  house.WriteProfile("BackupStatus", "LocalBackup", "1");
  host.Cont_LaunchAdminProcessSQL();
  EXPECT_EQ(house.Status("LocalBackup"), "100");
  EXPECT_EQ(house.Data("SQLBackupData.txt"), "");
  EXPECT_THAT(house.machine.Launches(), IsEmpty());
}

TEST(SqlElevated, LetsARunningDumpEndFirstAndIsNotEnteredTwice) {
  SqlHouse house;
  house.IsVista(true);
  house.PutBackupSet("SQLSERVERBACKUP;sales\r\n");
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
  const char* story;
  const char* status;  // null for no file
  const char* command;
  Stop stop;
  std::size_t launches;
  const char* status_after;
  const char* tool_status;
};

class SqlRequestTest : public testing::TestWithParam<RequestCase> {};

TEST_P(SqlRequestTest, IsServedOnce) {
  const RequestCase& row = GetParam();
  SqlHouse house;
  Controller& host = house.Twin().controller();
  const std::string folder = std::string{House::kData} + "OxWin\\";
  if (row.status != nullptr) house.machine.PutFile(folder + "SqlLaunchStatus.txt", row.status);
  if (row.command != nullptr) house.machine.PutFile(folder + "SQlLaunchCmd.txt", row.command);
  house.machine.OnPump([&] { host.Cont_LaunchSQlAdminProcess(); });
  house.machine.After(3s, [&] {
    if (row.stop == Stop::kByUser) house.WriteProfile("BackupStatus", "Status", "5");
    if (row.stop == Stop::kByHost) host.EndProgress();
  });
  for (int call = 0; call < 2; ++call) host.Cont_LaunchSQlAdminProcess();
  EXPECT_THAT(house.machine.Launches(), SizeIs(row.launches)) << row.story;
  EXPECT_EQ(house.Data("OxWin\\SqlLaunchStatus.txt"), row.status_after) << row.story;
  EXPECT_EQ(house.Data("OxWin\\SQLScheduleStatus.txt"), row.tool_status) << row.story;
  if (row.launches == 0) return;
  EXPECT_EQ(house.machine.Launches().at(0).file, SqlHouse::kTool);
  EXPECT_EQ(house.machine.Launches().at(0).parameters, "1 srv [sales] u p C:\\Dumps");
}

constexpr const char* kCommand = "C:\\ProgramData\\Ondura\\tolmera_sqlbackup.exe 1 srv [sales] u p C:\\Dumps";

INSTANTIATE_TEST_SUITE_P(
    Sql, SqlRequestTest,
    testing::Values(
        RequestCase{"nobody asks", nullptr, kCommand, Stop::kNone, 0, "<none>", "<none>"},
        RequestCase{"nothing is to be done", "0\r\n", kCommand, Stop::kNone, 0, "0\r\n", "<none>"},
        RequestCase{"it was served before", "2\r\n", kCommand, Stop::kNone, 0, "2\r\n", "<none>"},
        RequestCase{"without a command nothing starts", " 1 \r\n", nullptr, Stop::kNone, 0, "2\r\n",
                    "<none>"},
        RequestCase{"the tool is awaited", "1\r\n", kCommand, Stop::kNone, 1, "2\r\n", "<none>"},
        RequestCase{"the user's stop is handed on to the tool", "1\r\n", kCommand, Stop::kByUser, 1, "2\r\n",
                    "2\r\n"},
        RequestCase{"the host's stop too", "1\r\n", kCommand, Stop::kByHost, 1, "2\r\n", "2\r\n"}));

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
  EXPECT_EQ(house.machine.OpenHandles(), 0U);
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

TEST(StageSupport, ACommandLineIsSplitWhereItsProgramEnds) {
  struct Case {
    const char* line;
    const char* program;
    const char* parameters;
  };
  for (const Case& c : {Case{"\"C:\\My Tools\\t.exe\" -a \"b c\"", "C:\\My Tools\\t.exe", "-a \"b c\""},
                        Case{"C:\\My Tools\\t.exe  -a b", "C:\\My Tools\\t.exe", "-a b"},
                        Case{"C:\\My Tools\\t.exe", "C:\\My Tools\\t.exe", ""},
                        Case{" NTBACKUP backup ", "NTBACKUP", "backup"}, Case{"\"open", "open", ""}}) {
    SqlHouse house;
    house.machine.PutFile("C:\\My Tools\\t.exe", "");
    ServiceContext& context = house.Service().context();
    StageSupport support(context.job, context.backup_set);
    support.StartHidden(c.line);
    EXPECT_EQ(house.machine.Launches().at(0).file, c.program);
    EXPECT_EQ(house.machine.Launches().at(0).parameters, c.parameters);
  }
}

}  // namespace
}  // namespace ondura
