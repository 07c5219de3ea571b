// Jobs for the System State with real processes: the tool and the engine run beside the component.

#include "demo/common/system_backup.h"
#include "demo/rehearsal.h"
#include "schedule/Scheduler.h"
#include "service/Component.h"
#include "util/date_text.h"

namespace ondura {
namespace {

// A rehearsal machine whose user has a due job and the operating system's backup tool.
class SystemStateRehearsal : public demo::Rehearsal {
 public:
  SystemStateRehearsal() {
    MakeFolder("C:\\Windows\\system32");
    std::filesystem::copy_file(DEMO_NTBACKUP, HostRoot() + "/C/Windows/system32/ntbackup.exe");
    PutFile(installation().DataFile("userlist.ini"), "ann;\r\n");
    PutFile(UserFile("BackupSetData.txt"), "OXSYSTEMSTATEBACKUP;C:\\Dump State\r\n");
    // The engine wants a selection whatever else there is to send.
    PutFile("C:\\Docs\\a.txt", "hello");
    PutLines("atbkupfolderlist.txt", {"C:\\Docs\\a.txt"});
    const LocalTime now = machine().clock.Now();
    const std::string due = FormatDate(kStampPicture, now);
    PutFile(UserFile("scheduleData.txt"), "0\r\n3\b\bState\b\b" + due +
                                              "\b\b12:30\b\b0\b\b\b\b\b\b0\b\b0\b\b" + SortKeyOfText(due) +
                                              "\b\b6\b\b1111111\r\n");
    machine().profiles.WriteString({installation().DataFile("UserName.ini"), "ScanType", "DB"}, "0");
    machine().profiles.WriteString({installation().DataFile("UserName.ini"), "Tolmera", "Standard"}, "0");
  }

  void Tick() {
    Component component(machine());
    component.controller().cont_InitialSch(demo::kInstall);
    component.controller().Cont_CheckStandardRunning();
  }

  void TellTool(std::string_view key, std::string_view value) {
    machine().profiles.WriteString({"C:\\Windows\\system32\\ntbackup.ini", "Rehearsal", key}, value);
  }
};

TEST(SystemStateProcesses, TheToolsFileReachesTheVaultThroughTheEngine) {
  SystemStateRehearsal house;
  house.Tick();
  const std::string sent = house.Read(house.VaultFile("C\\Dump State\\OxSystemState.bkf"));
  EXPECT_EQ(sent.substr(0, 24), "System State of ONDURA\r\n");
  EXPECT_FALSE(house.machine().folders.Exists("C:\\Dump State"));
  EXPECT_NE(house.Read(house.UserFile("STBTraceFile.txt")).find("Successfully Completed system state backup"),
            std::string::npos);
  EXPECT_EQ(house.Read(demo::SystemBackup(house.machine()).LogPath(1)).substr(0, 2), "\xFF\xFE");
  EXPECT_FALSE(house.machine().files.Exists(house.UserFile("NTBPIDFile.dat")));
}

TEST(SystemStateProcesses, AStopEndsTheRunningTool) {
  SystemStateRehearsal house;
  house.TellTool("Milliseconds", "100000000");
  // The user asks for the stop as soon as the tool is watched.
  const PosixMachineResult component_machine =
      MakePosixMachine({.root = house.HostRoot(), .speed = 100, .pump = [&] {
                          if (house.machine().files.Exists(house.UserFile("NTBPIDFile.dat"))) {
                            house.SetStatus("Status", "5");
                          }
                        }});
  Component component(component_machine.owner->machine());
  component.controller().cont_InitialSch(demo::kInstall);
  component.controller().Cont_CheckStandardRunning();
  for (const ProcessEntry& entry : house.machine().processes.List(ProcessSource::kModules)) {
    EXPECT_NE(entry.base_name, "ntbackup.exe");
  }
  EXPECT_FALSE(house.machine().files.Exists(house.UserFile("NTBPIDFile.dat")));
  EXPECT_FALSE(house.machine().files.Exists(house.UserFile("STBTraceFile.txt")));
}

}  // namespace
}  // namespace ondura
