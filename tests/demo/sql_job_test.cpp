// SQL Server jobs with real hosts, a real engine and a real dump tool on a machine in a folder.

#include <gmock/gmock.h>
#include <signal.h>
#include <sys/wait.h>

#include <chrono>
#include <thread>

#include "profile/LightCiphers.h"
#include "rehearsal.h"
#include "schedule/schedule_record.h"
#include "util/date_text.h"

namespace ondura::demo {
namespace {

using testing::HasSubstr;
using testing::Not;

// A host as a process of its own; ended with the test at the latest.
class HostProcess {
 public:
  HostProcess(const std::string& root, const char* role, const char* ticks) {
    id_ = fork();
    if (id_ != 0) return;
    execl(ONDURA_HOST, ONDURA_HOST, role, "--root", root.c_str(), "--speed", "60", "--period", "3", "--ticks",
          ticks, nullptr);
    _exit(127);
  }
  ~HostProcess() {
    if (id_ > 0) End(SIGKILL);
  }
  HostProcess(const HostProcess&) = delete;
  HostProcess& operator=(const HostProcess&) = delete;

  // The exit code; -1 for a host that has not left by itself within a minute.
  int Finish() {
    for (int look = 0; look < 1200; ++look) {
      int status = 0;
      if (waitpid(id_, &status, WNOHANG) == id_) {
        id_ = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
      }
      std::this_thread::sleep_for(std::chrono::milliseconds{50});
    }
    return -1;
  }

  int Stop() { return End(SIGTERM); }

 private:
  int End(int signal) {
    kill(id_, signal);
    int status = 0;
    waitpid(id_, &status, 0);
    id_ = 0;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  pid_t id_ = 0;
};

// A rehearsal whose user has a due job of record "2" with two databases.
class SqlRehearsal : public Rehearsal {
 public:
  explicit SqlRehearsal(std::string_view system_version) {
    InstallInData(DEMO_SQL_DUMP, "tolmera_sqlbackup.exe");
    PutHostFile("machine.ini", "[System]\nVersion=" + std::string{system_version} + "\n");
    PutFile("C:\\Docs\\a.txt", "hello");
    PutLines("atbkupfolderlist.txt", {"C:\\Docs\\"});
    PutFile(UserFile("BackupSetData.txt"), "SQLSERVERBACKUP;sales;hr\r\n");
    PutFile(std::string{kData} + "userlist.ini", "ann;\r\n");
    transfer().Trf_WriteUserProfile("SQLTEMP", "C:\\Dumps\\");
    transfer().Trf_WriteUserProfile("port", "11905");
    transfer().Trf_WriteUserNameDBProfile("DB", "0");
    transfer().Trf_WriteUserNameProfile("Standard", "0");
    transfer().Trf_WriteUserNameProfile("Started", "0");
    LightCiphers ciphers(machine().code_page, machine().pump);
    transfer().Trf_WriteUserNameRegistryProfile("Default User name", ciphers.ShiftEncode("ann"));
    transfer().Trf_WriteUserNameRegistryProfile("StandbyBackup", "0");
    MakeFolder("C:\\Dumps");
    MakeDue();
  }

  void SetDump(std::string_view database, std::string_view key, std::string_view value) {
    machine().profiles.WriteString({std::string{kData} + "tolmera_sqlbackup.ini", database, key}, value);
  }

  std::string StageLog() { return Read(UserFile("SQLTraceFile.txt")); }
  std::string Sent(std::string_view name) { return Read(VaultFile("C\\Dumps\\" + std::string{name})); }

 private:
  void MakeDue() {
    const LocalTime now = machine().clock.Now();
    ScheduleRecord record;
    record.recordno = "2";
    record.schname = "Nightly";
    record.nexttime = FormatDate(kStampPicture, now);
    record.schedtime = "12:30";
    record.onceflag = "0";
    record.maillog = "0";
    record.mailoption = "0";
    record.sortkey = FormatDate("yyyymmddHHmm", now);
    record.repeatkind = "6";
    record.daymask = "1111111";
    PutFile(UserFile("scheduleData.txt"), "0\r\n" + LineOfRecord(record) + "\r\n");
    transfer().Trf_WriteUserProfile("STARTMISSEDSCH", "1");
  }
};

TEST(SqlRehearsalTest, OneProcessDumpsAndSends) {
  SqlRehearsal house("5.1");
  EXPECT_EQ(HostProcess(house.root(), "service", "1").Finish(), 0);
  EXPECT_EQ(house.Result(), "402");
  EXPECT_EQ(house.Sent("[sales].dmp"), "the tables of [sales] on (local)\r\n");
  EXPECT_EQ(house.Sent("[hr].dmp"), "the tables of [hr] on (local)\r\n");
  EXPECT_FALSE(house.machine().folders.Exists("C:\\Dumps"));
  EXPECT_THAT(house.StageLog(),
              HasSubstr("Successfully completed the backup of database 'hr' to 'C:\\Dumps\\' "));
}

TEST(SqlRehearsalTest, AToolThatFailsAndOneThatDiesLeaveTheOthersDumps) {
  SqlRehearsal house("5.1");
  house.PutFile(house.UserFile("BackupSetData.txt"), "SQLSERVERBACKUP;sales;hr;old\r\n");
  house.SetDump("sales", "Error", "Login failed for user 'sa'.");
  house.SetDump("hr", "Dies", "1");
  house.SetDump("old", "Milliseconds", "20000");
  EXPECT_EQ(HostProcess(house.root(), "service", "1").Finish(), 0);
  EXPECT_THAT(house.StageLog(),
              HasSubstr("Error while local backup of database :   \r\nLogin failed for user 'sa'.\r\n"));
  EXPECT_THAT(house.StageLog(), HasSubstr("Couldn't find the file name = C:\\Dumps\\[sales].dmp\r\n"));
  EXPECT_THAT(house.StageLog(), HasSubstr("Couldn't find the file name = C:\\Dumps\\[hr].dmp\r\n"));
  EXPECT_THAT(house.StageLog(), Not(HasSubstr("file name = C:\\Dumps\\[old].dmp")));
  EXPECT_EQ(house.Sent("[old].dmp"), "the tables of [old] on (local)\r\n");
  EXPECT_EQ(house.Sent("[hr].dmp"), "<missing>");
}

TEST(SqlRehearsalTest, TwoProcessesMeetInTheProfile) {
  SqlRehearsal house("6.1");
  HostProcess elevated(house.root(), "elevated", "100000");
  EXPECT_EQ(HostProcess(house.root(), "service", "1").Finish(), 0);
  EXPECT_EQ(elevated.Stop(), 0);
  EXPECT_EQ(house.ProfileValue("BackupStatus", "LocalBackup"), "100");
  EXPECT_EQ(house.Sent("[sales].dmp"), "the tables of [sales] on (local)\r\n");
  EXPECT_EQ(house.Sent("[hr].dmp"), "the tables of [hr] on (local)\r\n");
  EXPECT_EQ(house.Read(std::string{kData} + "SQLBackupData.txt"),
            "C:\\Dumps\\[sales].dmp\r\nC:\\Dumps\\[hr].dmp\r\n");
}

}  // namespace
}  // namespace ondura::demo
