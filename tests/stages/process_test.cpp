// Jobs with real processes: the tools and the engine run beside the component.

#include <gtest/gtest.h>

#include "rehearsal/Rehearsal.h"
#include "rehearsal/common/SystemBackup.h"
#include "service/Component.h"

namespace ondura {
namespace {

constexpr const char* kNtbackupFolder = "C:\\Windows\\system32\\";

// A rehearsal machine with a backup tool and an Exchange server, whose user has a job due.
class StageRehearsal : public rehearsal::JobRehearsal {
 public:
  explicit StageRehearsal(const char* recordno) {
    MakeFolder(kNtbackupFolder);
    std::filesystem::copy_file(REHEARSAL_NTBACKUP, HostRoot() + "/C/Windows/system32/ntbackup.exe");
    InstallInData(REHEARSAL_EXCHANGE_STORE, "TolmeraProfExchBkp.exe");
    InstallInData(REHEARSAL_EXCHANGE_BRICK, "OxExchBrick.exe");
    InstallInData(REHEARSAL_SQL_DUMP, "tolmera_sqlbackup.exe");
    PutFile(OnServer("StorageGroups\\First Group\\mail.edb"), "store of the first group");
    PutFile(OnServer("StorageGroups\\Other\\mail.edb"), "store of another group");
    PutFile(OnServer("Mailboxes\\ann\\inbox.pst"), "letters");
    PutBackupSet(
        "OXSYSTEMSTATEBACKUP;C:\\Dump State\r\nOxExchangeServerBkset;First Group\r\nOxExchBrick;ann\r\n"
        "SQLSERVERBACKUP;sales");
    transfer().Trf_WriteUserProfile("APIEXCHANGE", "C:\\Store Dump");
    transfer().Trf_WriteUserProfile("EXCHBRICK", "C:\\Mail Dump");
    transfer().Trf_WriteUserProfile("SQLTEMP", "C:\\Dumps\\");
    MakeFolder("C:\\Dumps");
    MakeDue(recordno);
  }

  std::string OnServer(const std::string& path) { return installation().DataFile("ExchangeServer\\") + path; }
  void PutBackupSet(const std::string& lines) { PutFile(UserFile("BackupSetData.txt"), lines + "\r\n"); }

  // One tick of a service on this machine; afterwards the job's result text.
  std::string RunJob() { return RunJobOn(machine()); }
  std::string RunJobOn(const Machine& machine) {
    Component component(machine);
    component.controller().cont_InitialSch(rehearsal::kInstall);
    component.controller().Cont_CheckStandardRunning();
    return component.context().job.state.run.result_text;
  }
};

struct KindCase {
  const char* recordno;
  std::string dump;  // below drive C
  std::string bytes;

  friend void PrintTo(const KindCase& row, std::ostream* out) { *out << "record " << row.recordno; }
};

class KindTest : public testing::TestWithParam<KindCase> {};

// What the stage has made is saved, byte for byte, before the job deletes it: whichever way the engine is
// told of files, and whatever the user has chosen beside it.
TEST_P(KindTest, ReachesTheVaultByEachMethod) {
  const auto as_it_is = [](StageRehearsal&) {};
  const auto nothing_chosen = [](StageRehearsal& house) {
    house.machine().files.Remove(house.UserFile("atbkupfolderlist.txt"), Removal::kForce);
  };
  const auto others_chosen = [](StageRehearsal& house) {
    house.PutFile(house.UserFile("AutoFileSelection.txt"), "1\r\n.doc\r\n");
    house.PutLines("atbkupExcludelist.txt", {"C:\\Dumps\\", "C:\\Store Dump\\", "C:\\Mail Dump\\"});
  };
  using Way = std::tuple<const char*, std::string, std::function<void(StageRehearsal&)>>;
  for (const auto& [story, method, choose] :
       {Way{"by database", "1", as_it_is}, Way{"by list", "0", as_it_is},
        Way{"nothing chosen, by database", "", nothing_chosen},
        Way{"nothing chosen, by list", "0", nothing_chosen},
        Way{"endings chosen, by database", "1", others_chosen},
        Way{"endings chosen, by list", "0", others_chosen}}) {
    StageRehearsal house(GetParam().recordno);
    house.PutHostFile("machine.ini", "[System]\nVersion=5.1\n");
    house.transfer().Trf_WriteUserNameDBProfile("DB", method);
    choose(house);
    const PosixMachineResult older = MakePosixMachine({.root = house.HostRoot(), .speed = 500, .pump = {}});
    EXPECT_EQ(house.RunJobOn(older.owner->machine()), "") << story;
    std::string want = GetParam().bytes;
    if (want.starts_with("System")) want.resize(65536, 's');
    EXPECT_TRUE(house.Read(house.VaultFile("C\\" + GetParam().dump)) == want) << story;
    EXPECT_FALSE(house.machine().files.Exists("C:\\" + GetParam().dump)) << story;
    EXPECT_EQ(house.Read(house.VaultFile("C\\Store Dump\\Other\\mail.edb")), "<missing>") << "not selected";
  }
}

INSTANTIATE_TEST_SUITE_P(
    StageProcesses, KindTest,
    testing::Values(KindCase{"2", "Dumps\\[sales].dmp", "the tables of [sales] on (local)\r\n"},
                    KindCase{"3", "Dump State\\OxSystemState.bkf", "System State of ONDURA\r\n"},
                    KindCase{"4", "Store Dump\\First Group\\mail.edb", "store of the first group"},
                    KindCase{"5", "Mail Dump\\OxExchBrickBkset\\ann\\inbox.pst", "letters"}));

TEST(SystemStateProcesses, AStopEndsTheRunningTool) {
  StageRehearsal house("3");
  house.machine().profiles.WriteString(
      {std::string{kNtbackupFolder} + "ntbackup.ini", "Rehearsal", "Milliseconds"}, "100000000");
  // The user asks for the stop as soon as the tool is watched.
  const PosixMachineResult stopped_machine =
      MakePosixMachine({.root = house.HostRoot(), .speed = 100, .pump = [&] {
                          if (house.machine().files.Exists(house.UserFile("NTBPIDFile.dat"))) {
                            house.SetStatus("Status", "5");
                          }
                        }});
  house.RunJobOn(stopped_machine.owner->machine());
  for (const ProcessEntry& entry : house.machine().processes.List(ProcessSource::kModules)) {
    EXPECT_NE(entry.base_name, "ntbackup.exe");
  }
  EXPECT_FALSE(house.machine().files.Exists(house.UserFile("NTBPIDFile.dat")));
  EXPECT_FALSE(house.machine().files.Exists(house.UserFile("STBTraceFile.txt")));
}

TEST(ExchangeProcesses, WhatTheServerDoesNotHoldEndsTheJobWithTheToolsOwnReason) {
  StageRehearsal store("4");
  store.PutBackupSet("OxExchangeServerBkset;Gone");
  EXPECT_EQ(store.RunJob(), "The storage group 'Gone' is not on the server.");
  EXPECT_EQ(store.ProfileValue("BackupStatus", "DLLStatus"), "3");
  StageRehearsal brick("5");
  brick.machine().folders.Remove(brick.OnServer("Mailboxes"), Removal::kForce);
  EXPECT_EQ(brick.RunJob(),
            "There is no mailbox on the server.Please view Exchange BrickLevel Backup Log for more "
            "information.");
}

}  // namespace
}  // namespace ondura
