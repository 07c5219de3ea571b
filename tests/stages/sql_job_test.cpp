// Jobs of record "2", in one process and in two that meet in the profile.

#include "stages/SqlHouse.h"
#include "text/utf16.h"

namespace ondura {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

TEST(SqlJob, DumpsItsDatabasesOneByOneAndHandsEachDumpOn) {
  SqlHouse house;
  std::string list;
  house.During(51, [&] { list = house.Text("TempCom\\CompareListInput1.txt"); });
  house.Tick();
  EXPECT_THAT(house.Commands(), ElementsAre(24, 51, 16));
  EXPECT_THAT(LinesOf(list),
              ElementsAre(HasSubstr("C:\\Dumps\\[sales].dmp/4/"), HasSubstr("C:\\Dumps\\[hr].dmp/4/")));
  EXPECT_EQ(house.machine.FileBytes("C:\\Dumps\\[hr].dmp"), std::nullopt) << "sent dumps are deleted";
  const LaunchRequest tool = house.machine.Launches().at(0);
  EXPECT_EQ(tool.file, std::string{SqlHouse::kTool} + " ");
  EXPECT_EQ(tool.parameters,
            "1 (local) [sales] \"\" \"\" C:\\Dumps\\ C:\\ProgramData\\Ondura\\OXWIN SQLBackupLog.txt "
            "SQLErrorBackupFile.txt SQLScheduleStatus.txt SQLBackupTraceFile.txt");
  EXPECT_EQ(tool.folder, "C:\\ProgramData\\Ondura");
  std::string log;
  for (const std::string where : {"'sales' to 'C:\\Dumps\\' \r\n", "'hr' to 'C:\\Dumps\\' \r\n"}) {
    log += "Information : [@ : ] Started backup of database " + where +
           "Information : [@ : ] Successfully completed the backup of database " + where;
  }
  EXPECT_EQ(StageHouse::WithoutTimes(house.Bytes("SQLTraceFile.txt")), log);
  const std::string arguments =
      " \"\" \"\" \"C:\\Dumps\\\" \"C:\\ProgramData\\Ondura\\OXWIN\" SQLBackupLog.txt SQLErrorBackupFile.txt "
      "SQLScheduleStatus.txt SQLBackupTraceFile.txt";
  const std::string line =
      "@ SQL Cmdline : \"C:\\ProgramData\\Ondura\\tolmera_sqlbackup.exe \"1 \"(local)\" ";
  EXPECT_THAT(
      house.StageTrace(),
      ElementsAre("@  Started the backup of the MS SQL Server database files...",
                  "Cont_SchBackup :  OS not vista ", "Cont_SchBackup :  nonvista case backv.count :: 1",
                  "@ Started Backup of SQL Server files", "came for non vista case: ",
                  line + "\"[sales]\"" + arguments, "Started backup of database 'sales' to 'C:\\Dumps\\' ",
                  line + "\"[hr]\"" + arguments, "Started backup of database 'hr' to 'C:\\Dumps\\' "));
  EXPECT_THAT(house.Trace(), Contains("C:\\Dumps\\[hr].dmp"));
  EXPECT_EQ(house.Data("OXWIN\\SQLScheduleStatus.txt"), "0\r\n");
  EXPECT_EQ(house.Data("SQLBackupData.txt"), "<none>") << "the list is the elevated host's";
  EXPECT_EQ(house.NextTime(), House::kTomorrow);
}

TEST(SqlJob, WaitsForTheElevatedHostAndSendsItsFolder) {
  SqlHouse house;
  house.IsVista(true);
  Component& elevated = house.Twin();
  std::string list, result;
  house.During(51, [&] { list = house.Text("TempCom\\CompareListInput1.txt"); });
  house.machine.OnPump([&] {
    if (house.Status("LocalBackup") == "1") result = house.Status("RetValue");
    elevated.controller().Cont_LaunchAdminProcess();
    elevated.controller().Cont_LaunchAdminProcessSQL();
    elevated.controller().Cont_LaunchSQlAdminProcess();
  });
  house.Tick();
  EXPECT_EQ(house.Status("LocalBackup"), "100");
  EXPECT_EQ(result, "100");
  EXPECT_THAT(LinesOf(list), testing::UnorderedElementsAre(HasSubstr("C:\\Dumps\\[sales].dmp/"),
                                                           HasSubstr("C:\\Dumps\\[hr].dmp/")));
  EXPECT_EQ(house.Data("SQLBackupData.txt"), "C:\\Dumps\\[sales].dmp\r\nC:\\Dumps\\[hr].dmp\r\n");
  EXPECT_THAT(
      house.StageTrace(),
      testing::IsSupersetOf(
          {"came for the vista case: ", "Cont_SchBackup : vista case  LocalBackup :: 1",
           "Cont_LaunchAdminProcessSQL : strTemp :: C:\\ProgramData\\Ondura\\BackupSetData.txt",
           "backupsetdata file path: C:\\ProgramData\\Ondura\\Onduraann\\BackupSetData.txt",
           "Calling DB_ReadBackdata ", "backv Count: 1", "Count: 4", "array value:  ", "DB name is: hr",
           "before checking exe status: ", "calling SQL BackupToDisk: tolmera_sqlbackup.exe",
           "@ Cont_LaunchAdminProcessSQL LocalBackup Value :: 100", "[SQL] Backup completed",
           "@ Cont_LaunchAdminProcessSQL g_bLaunchVistaSQL :: False"}));
  EXPECT_THAT(house.Trace(), Not(Contains("@ : There is no SQL Server database available ")));
  EXPECT_EQ(FromUtf16(house.Data("ScheduleTraceFileService.txt")), "calling exe: tolmera_sqlbackup.exe\r\n");
}

TEST(SqlJob, SaysThatNoElevatedHostAnswersUntilOneDoes) {
  SqlHouse house;
  house.IsVista(true);
  const std::string says =
      "The SQL Server databases wait to be dumped: no elevated host has answered for ten minutes. Start it, "
      "or stop the backup.";
  std::string early, late, dumped;
  house.machine.After(595s, [&] { early = house.Text("SchStatus.txt"); });
  house.machine.After(615s, [&] {
    late = house.Text("SchStatus.txt");
    Component& elevated = house.Twin();
    house.machine.OnPump([&] { elevated.controller().Cont_LaunchAdminProcessSQL(); });
  });
  house.During(51, [&] { dumped = house.Text("SchStatus.txt"); });
  house.Tick();
  EXPECT_EQ(early, "");
  EXPECT_EQ(late, says + "\r\n");
  EXPECT_EQ(dumped, "\r\n");
  EXPECT_EQ(std::ranges::count(house.Trace(), "@  " + says), 1);
  EXPECT_THAT(house.Commands(), ElementsAre(24, 51, 16));
}

TEST(SqlJob, AStopEndsTheWaitForTheElevatedHostAndItsDump) {
  for (const bool dumps : {false, true}) {
    SqlHouse house;
    house.IsVista(true);
    house.machine.PutFolder(std::string{House::kData} + "OXWIN");
    if (dumps) house.machine.PutProcess(SqlHouse::kTool);
    house.machine.After(30s, [&] { house.UserStops(); });
    house.Tick();
    EXPECT_EQ(house.Status("LocalBackup"), "0") << "a host that comes later finds nothing to do";
    EXPECT_EQ(house.Data("OXWIN\\SQLScheduleStatus.txt"), dumps ? "2\r\n" : "<none>");
    EXPECT_THAT(house.Trace(), Contains("@ User aborted the SQL Server backup"));
    EXPECT_EQ(house.StatusAfterJob(), "3");
    EXPECT_THAT(house.Commands(), testing::IsEmpty());
  }
}

TEST(SqlJob, AHostDumpsNothingMoreForAJobThatWasStopped) {
  SqlHouse house;
  house.IsVista(true);
  house.WriteProfile("BackupStatus", "LocalBackup", "1");
  house.machine.InstallProgram(SqlHouse::kTool, [&](ProgramRun& run) {
    run.After(3s, [&] { house.WriteProfile("BackupStatus", "LocalBackup", "0"); });
  });
  house.Twin().controller().Cont_LaunchAdminProcessSQL();
  EXPECT_THAT(house.machine.Launches(), testing::SizeIs(1));
}

struct FailingDump : DatabaseDump {
  bool BackupToDisk(std::string_view) override { return false; }
};

struct FailureCase {
  std::string folder, code, reason, trace, log_end;
};

// Every row ends in the session log, the keys and the code; none reaches the engine.
TEST(SqlJob, AFailureLeavesItsTextsKeysAndCode) {
  const std::string no_folder =
      "The SQL server backup operation has been cancelled since the SQL Temp path could not be found";
  const std::string unwritable =
      "Unable to continue the SQL server backup operation. Please check if the disk is full or write "
      "protected";
  for (const FailureCase& row : {FailureCase{"", "4", no_folder, "@ SQL Temp path not found ", "Total Time"},
                                 {"C:\\Nowhere\\", "3", unwritable,
                                  "Cont_SchBackup :  PERMISSION DENIED :: \n"
                                  "Unable to continue the SQL Server Backup operation, please make "
                                  "sure that the disk is not full or write protected.",
                                  "Total Time        : "}}) {
    SCOPED_TRACE(row.reason);
    SqlHouse house;
    house.WriteAccount("SQLTEMP", row.folder);
    house.Tick();
    house.ExpectFailedEnd(row.code, row.reason + ".", row.trace + "\n@ " + row.reason + "<log>",
                          row.log_end + "\r\n");
  }
}

TEST(SqlJob, ADumpThatAnswersWithAnAbortFailsTheJob) {
  SqlHouse house;
  ServiceContext& context = house.Service().context();
  context.installation().CurrentUser = "ann";
  StageSupport support(context.job, context.backup_set);
  FailingDump dump;
  context.job.state.run.Sch_SQLTEMP = "C:\\Dumps\\";
  EXPECT_EQ(SqlServerStage(context.job, support, context.backup_set, dump).Run(context.job.state),
            kJobFailed);
  const std::string reason = "The SQL server backup has been aborted by the user";
  EXPECT_THAT(house.Trace(), testing::IsSupersetOf(std::vector<std::string>{
                                 "@ User aborted the SQL Server backup", "@ " + reason + "<log>"}));
  EXPECT_EQ(house.run().result_text, reason);
  EXPECT_EQ(house.SessionLog(), StageHouse::FailedLog(reason, "Total Time        : \r\n"));
  EXPECT_EQ(house.Status("Status") + house.Status("DLLStatus"), "33");
}

TEST(SqlJob, AnOtherHostKnowsThatALongDumpIsNoJobThatWasCutOff) {
  SqlHouse house;
  house.PutBackupSet("SQLSERVERBACKUP;sales");
  std::string started;
  house.machine.InstallProgram(SqlHouse::kTool, [&](ProgramRun& run) {
    run.After(290s, [&] {
      house.Twin();
      started =
          house.Shared("Started") + house.Bytes("scheduleData.txt").substr(0, 1) + house.Status("Status");
    });
    run.ExitAfter(300s, 0);
  });
  house.Tick();
  EXPECT_EQ(started, "121") << "a second host would start the job once more";
  EXPECT_EQ(std::ranges::count(house.Trace(), "@  Waiting for the local backup"), 5);
}

TEST(SqlJob, WhatIsNotDumpedStaysInTheListAndTheLogTellsOfIt) {
  struct Case {
    const char *story, *error_text, *errors;  // the tool's, null for no file, and those in the stage's log
  };
  constexpr const char* kError =
      "Information : [11-14-2026 12:30:15 : ] Error while local backup of database :   ";
  for (const Case& c : {Case{"a tool that dies", nullptr, ""},
                        {"an error with text", "no such\r\n", "\r\nno such\r\n\r\n"},
                        {"an error file without text", "  ", "\r\n"}}) {
    SqlHouse house;
    house.PutBackupSet("SQLSERVERBACKUP;a:b");
    house.machine.PutFile(house.UserPath("SQLErrorBackupFile.txt"), "of an earlier run");
    house.machine.InstallProgram(SqlHouse::kTool, [&](ProgramRun& run) {
      const std::string error_file = house.UserPath("SQLErrorBackupFile.txt");
      if (c.error_text != nullptr)
        run.After(1s, [&, error_file] { house.machine.PutFile(error_file, c.error_text); });
      run.ExitAfter(1s, 134);
    });
    house.Tick();
    const std::string errors = c.error_text == nullptr ? "" : kError + std::string{c.errors};
    EXPECT_EQ(
        house.Bytes("SQLTraceFile.txt"),
        "Information : [11-14-2026 12:30:04 : ] Started backup of database 'a:b' to 'C:\\Dumps\\' \r\n" +
            errors +
            "Error       : [11-14-2026 12:30:22 : ] Backup failed. Couldn't find the file name = "
            "C:\\Dumps\\[a:b].dmp\r\n")
        << c.story;
    EXPECT_THAT(house.Trace(), Contains("C:\\Dumps\\[a:b].dmp")) << c.story;
    EXPECT_THAT(house.Commands(), ElementsAre(24, 51, 16)) << c.story << ": the job goes on";
  }
}

TEST(SqlJob, WithoutDatabasesItSendsTheFolder) {
  SqlHouse house;
  house.PutBackupSet("SQLSERVERBACKUP;sales\r\nOxExchBrick;x\r\nsqlserverbackup; ;SqlServerBackup");
  house.machine.PutFile("C:\\Dumps\\left.dmp", "old");
  std::string list;
  house.During(51, [&] { list = house.Text("TempCom\\CompareListInput1.txt"); });
  house.Tick();
  EXPECT_THAT(LinesOf(list), ElementsAre(HasSubstr("C:\\Dumps\\left.dmp/")));
  EXPECT_THAT(house.Trace(), Contains("@ : There is no SQL Server database available "));
  EXPECT_EQ(house.machine.Launches().at(0).file, House::kEngine) << "the last line with the keyword counts";
}

}  // namespace
}  // namespace ondura
