// Exchange jobs with real processes: tools and engine run beside the component.

#include <gmock/gmock.h>

#include "demo/rehearsal.h"
#include "schedule/Scheduler.h"
#include "service/Component.h"
#include "util/date_text.h"

namespace ondura {
namespace {

using testing::HasSubstr;

// A rehearsal machine with an Exchange server, whose user has a job due.
class ExchangeRehearsal : public demo::Rehearsal {
 public:
  ExchangeRehearsal(const std::string& recordno, const char* tool, const std::string& name) {
    std::filesystem::copy_file(tool, HostRoot() + "/C/ProgramData/Ondura/" + name);
    PutFile(OnServer("StorageGroups\\First Group\\mail.edb"), "store of the first group");
    PutFile(OnServer("StorageGroups\\Other\\mail.edb"), "store of another group");
    PutFile(OnServer("Mailboxes\\ann\\inbox.pst"), "letters");
    PutFile(installation().DataFile("userlist.ini"), "ann;\r\n");
    PutLines("atbkupfolderlist.txt", {"C:\\Docs\\a.txt"});  // without a selection the engine does nothing
    PutFile(UserFile("BackupSetData.txt"), "OxExchangeServerBkset;First Group\r\nOxExchBrick;ann\r\n");
    transfer().Trf_WriteUserProfile("APIEXCHANGE", "C:\\Store Dump");
    transfer().Trf_WriteUserProfile("EXCHBRICK", "C:\\Mail Dump");
    const std::string due = FormatDate(kStampPicture, machine().clock.Now());
    PutFile(UserFile("scheduleData.txt"), "0\r\n" + recordno + "\b\bMail\b\b" + due +
                                              "\b\b12:30\b\b0\b\b\b\b\b\b0\b\b0\b\b" + SortKeyOfText(due) +
                                              "\b\b6\b\b1111111\r\n");
    transfer().Trf_WriteUserNameDBProfile("DB", "0");
    transfer().Trf_WriteUserNameProfile("Standard", "0");
  }

  std::string OnServer(const std::string& path) { return installation().DataFile("ExchangeServer\\") + path; }

  // One tick of the service; afterwards the job's result text.
  std::string RunJob() {
    Component component(machine());
    component.controller().cont_InitialSch(demo::kInstall);
    component.controller().Cont_CheckStandardRunning();
    groups_ = component.controller().FindStorageGroupCount();
    return component.context().job.state.run.result_text;
  }

  int groups() const { return groups_; }

 private:
  int groups_ = 0;
};

class StoreRehearsal : public ExchangeRehearsal {
 public:
  StoreRehearsal() : ExchangeRehearsal("4", DEMO_EXCHANGE_STORE, "TolmeraProfExchBkp.exe") {}
};

class BrickRehearsal : public ExchangeRehearsal {
 public:
  BrickRehearsal() : ExchangeRehearsal("5", DEMO_EXCHANGE_BRICK, "OxExchBrick.exe") {}
};

TEST(ExchangeProcesses, TheSelectedGroupReachesTheVaultWithItsDescription) {
  StoreRehearsal house;
  EXPECT_EQ(house.RunJob(), "");
  EXPECT_EQ(house.Read(house.VaultFile("C\\Store Dump\\First Group\\mail.edb")), "store of the first group");
  EXPECT_EQ(house.Read(house.VaultFile("C\\Store Dump\\Other\\mail.edb")), "<missing>");
  EXPECT_THAT(house.Read(house.VaultFile("C\\Store Dump\\ExchBackupINI.ini")), HasSubstr("SG1=First Group"));
  EXPECT_EQ(house.groups(), 1);
  EXPECT_FALSE(house.machine().folders.Exists("C:\\Store Dump"));
  EXPECT_EQ(house.Read(house.UserFile("ExchBackupStatus.txt")), "0\r\n");
}

TEST(ExchangeProcesses, AGroupThatTheServerDoesNotHoldEndsTheJobWithTheToolsReason) {
  StoreRehearsal house;
  house.PutFile(house.UserFile("BackupSetData.txt"), "OxExchangeServerBkset;Gone\r\n");
  EXPECT_EQ(house.RunJob(), "The storage group 'Gone' is not on the server.");
  EXPECT_EQ(house.ProfileValue("BackupStatus", "DLLStatus"), "3");
}

TEST(ExchangeProcesses, TheMailboxesReachTheVault) {
  BrickRehearsal house;
  EXPECT_EQ(house.RunJob(), "");
  EXPECT_EQ(house.Read(house.VaultFile("C\\Mail Dump\\OxExchBrickBkset\\ann\\inbox.pst")), "letters");
  EXPECT_FALSE(house.machine().folders.Exists("C:\\Mail Dump\\OxExchBrickBkset"));
}

TEST(ExchangeProcesses, AServerWithoutMailboxesEndsTheJobWithTheToolsLastLine) {
  BrickRehearsal house;
  house.machine().folders.Remove(house.OnServer("Mailboxes"), Removal::kForce);
  EXPECT_EQ(house.RunJob(),
            "There is no mailbox on the server.Please view Exchange BrickLevel Backup Log for more "
            "information.");
}

}  // namespace
}  // namespace ondura
