// SQL Server jobs with real hosts, a real engine and a real dump tool on a machine in a folder.

#include <gmock/gmock.h>
#include "HostProcess.h"
#include "Rehearsal.h"

namespace ondura::rehearsal {
namespace {

using testing::HasSubstr;

// A rehearsal whose user has a due job of record "2" with two databases.
class SqlRehearsal : public JobRehearsal {
 public:
  explicit SqlRehearsal(std::string_view system_version) {
    InstallInData(REHEARSAL_SQL_DUMP, "tolmera_sqlbackup.exe");
    PutHostFile("machine.ini", "[System]\nVersion=" + std::string{system_version} + "\n");
    PutFile(UserFile("BackupSetData.txt"), "SQLSERVERBACKUP;sales;hr\r\n");
    transfer().Trf_WriteUserProfile("SQLTEMP", "C:\\Dumps\\");
    MakeFolder("C:\\Dumps");
    MakeDue("2");
  }

  void SetDump(std::string_view database, std::string_view key, std::string_view value) {
    machine().profiles.WriteString({std::string{kData} + "tolmera_sqlbackup.ini", database, key}, value);
  }

  std::string Sent(std::string_view name) { return Read(VaultFile("C\\Dumps\\" + std::string{name})); }
};

TEST(SqlRehearsalTest, AToolThatFailsAndOneThatDiesLeaveTheOthersDumps) {
  SqlRehearsal house("5.1");
  house.PutFile(house.UserFile("BackupSetData.txt"), "SQLSERVERBACKUP;sales;hr;old\r\n");
  house.SetDump("sales", "Error", "Login failed for user 'sa'.");
  house.SetDump("hr", "Dies", "1");
  house.SetDump("old", "Milliseconds", "20000");
  EXPECT_EQ(HostProcess(house.HostRoot(), "service", "1").Finish(), 0);
  EXPECT_THAT(house.Read(house.UserFile("SQLTraceFile.txt")),
              HasSubstr("Error while local backup of database :   \r\nLogin failed for user 'sa'.\r\n"));
  for (const auto& [name, bytes] : {std::pair<std::string, const char*>{"[sales].dmp", "<missing>"},
                                    {"[hr].dmp", "<missing>"},
                                    {"[old].dmp", "the tables of [old] on (local)\r\n"}}) {
    EXPECT_EQ(house.Sent(name), bytes);
  }
}

TEST(SqlRehearsalTest, TwoProcessesMeetInTheProfile) {
  SqlRehearsal house("6.1");
  HostProcess elevated(house.HostRoot(), "elevated", "100000");
  EXPECT_EQ(HostProcess(house.HostRoot(), "service", "1").Finish(), 0);
  EXPECT_EQ(elevated.Stop(), 0);
  EXPECT_EQ(house.ProfileValue("BackupStatus", "LocalBackup"), "100");
  EXPECT_EQ(house.Sent("[sales].dmp"), "the tables of [sales] on (local)\r\n");
  EXPECT_EQ(house.Sent("[hr].dmp"), "the tables of [hr] on (local)\r\n");
  EXPECT_EQ(house.Read(std::string{kData} + "SQLBackupData.txt"),
            "C:\\Dumps\\[sales].dmp\r\nC:\\Dumps\\[hr].dmp\r\n");
}

}  // namespace
}  // namespace ondura::rehearsal
