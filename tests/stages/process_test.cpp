// Jobs with real processes: the tools and the engine run beside the component.

#include <gmock/gmock.h>

#include "demo/common/system_backup.h"
#include "demo/rehearsal.h"
#include "service/Component.h"

namespace ondura {
namespace {

using testing::HasSubstr;

constexpr const char* kNtbackupFolder = "C:\\Windows\\system32\\";

// A rehearsal machine with a backup tool and an Exchange server, whose user has a job due.
class StageRehearsal : public demo::JobRehearsal {
 public:
  explicit StageRehearsal(const char* recordno) {
    MakeFolder(kNtbackupFolder);
    std::filesystem::copy_file(DEMO_NTBACKUP, HostRoot() + "/C/Windows/system32/ntbackup.exe");
    InstallInData(DEMO_EXCHANGE_STORE, "TolmeraProfExchBkp.exe");
    InstallInData(DEMO_EXCHANGE_BRICK, "OxExchBrick.exe");
    PutFile(OnServer("StorageGroups\\First Group\\mail.edb"), "store of the first group");
    PutFile(OnServer("StorageGroups\\Other\\mail.edb"), "store of another group");
    PutFile(OnServer("Mailboxes\\ann\\inbox.pst"), "letters");
    PutBackupSet(
        "OXSYSTEMSTATEBACKUP;C:\\Dump State\r\nOxExchangeServerBkset;First Group\r\nOxExchBrick;ann");
    transfer().Trf_WriteUserProfile("APIEXCHANGE", "C:\\Store Dump");
    transfer().Trf_WriteUserProfile("EXCHBRICK", "C:\\Mail Dump");
    MakeDue(recordno);
  }

  std::string OnServer(const std::string& path) { return installation().DataFile("ExchangeServer\\") + path; }
  void PutBackupSet(const std::string& lines) { PutFile(UserFile("BackupSetData.txt"), lines + "\r\n"); }

  // One tick of a service on this machine; afterwards the job's result text.
  std::string RunJob() { return RunJobOn(machine()); }
  std::string RunJobOn(const Machine& machine) {
    Component component(machine);
    component.controller().cont_InitialSch(demo::kInstall);
    component.controller().Cont_CheckStandardRunning();
    groups = component.controller().FindStorageGroupCount();
    return component.context().job.state.run.result_text;
  }

  int groups = 0;
};

TEST(SystemStateProcesses, TheToolsFileReachesTheVaultThroughTheEngine) {
  StageRehearsal house("3");
  house.RunJob();
  const std::string sent = house.Read(house.VaultFile("C\\Dump State\\OxSystemState.bkf"));
  EXPECT_EQ(sent.substr(0, 24), "System State of ONDURA\r\n");
  EXPECT_FALSE(house.machine().folders.Exists("C:\\Dump State"));
  EXPECT_THAT(house.Read(house.UserFile("STBTraceFile.txt")),
              HasSubstr("Successfully Completed system state backup"));
  EXPECT_EQ(house.Read(demo::SystemBackup(house.machine()).LogPath(1)).substr(0, 2), "\xFF\xFE");
  EXPECT_FALSE(house.machine().files.Exists(house.UserFile("NTBPIDFile.dat")));
}

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

TEST(ExchangeProcesses, TheSelectedGroupReachesTheVaultWithItsDescription) {
  StageRehearsal house("4");
  EXPECT_EQ(house.RunJob(), "");
  EXPECT_EQ(house.Read(house.VaultFile("C\\Store Dump\\First Group\\mail.edb")), "store of the first group");
  EXPECT_EQ(house.Read(house.VaultFile("C\\Store Dump\\Other\\mail.edb")), "<missing>");
  EXPECT_THAT(house.Read(house.VaultFile("C\\Store Dump\\ExchBackupINI.ini")), HasSubstr("SG1=First Group"));
  EXPECT_EQ(house.groups, 1);
  EXPECT_FALSE(house.machine().folders.Exists("C:\\Store Dump"));
  EXPECT_EQ(house.Read(house.UserFile("ExchBackupStatus.txt")), "0\r\n");
}

TEST(ExchangeProcesses, TheMailboxesReachTheVault) {
  StageRehearsal house("5");
  EXPECT_EQ(house.RunJob(), "");
  EXPECT_EQ(house.Read(house.VaultFile("C\\Mail Dump\\OxExchBrickBkset\\ann\\inbox.pst")), "letters");
  EXPECT_FALSE(house.machine().folders.Exists("C:\\Mail Dump\\OxExchBrickBkset"));
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
