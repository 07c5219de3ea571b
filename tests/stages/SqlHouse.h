#pragma once

#include "profile/LightCiphers.h"
#include "stages/SqlDump.h"
#include "stages/SqlServerStage.h"
#include "stages/StageHouse.h"

namespace ondura {

// A house whose user ann has two databases to be backed up by a job that is due, on a system where the job
// dumps them itself. Its dump tool takes three seconds and writes the dump.
class SqlHouse : public StageHouse {
 public:
  static constexpr std::string_view kTool = "C:\\ProgramData\\Ondura\\tolmera_sqlbackup.exe";

  SqlHouse() : StageHouse(Mailing("2")) {
    using namespace std::chrono_literals;
    LightCiphers ciphers(machine.outside().code_page, machine.outside().pump);
    WriteRegistry("Default User name", ciphers.ShiftEncode("ann"));
    WriteAccount("SQLTEMP", "C:\\Dumps\\");
    machine.PutFolder("C:\\Dumps");
    machine.PutFolder(UserPath("Session"));
    PutText("atbkupfolderlist.txt", "");
    PutBackupSet("SQLSERVERBACKUP;sales; ;hr");
    IsVista(false);
    machine.InstallProgram(kTool, [this](ProgramRun& run) {
      run.AppearsAfter(100ms);  // a slow start
      run.After(3s, [this, &run] { machine.PutFile(DumpOf(run), "rows"); });
    });
  }

  void IsVista(bool vista) {
    machine.surroundings().version = vista ? SystemVersion{2, 6, 1, true} : SystemVersion{2, 5, 1, true};
  }

  static std::string DumpOf(const ProgramRun& run) {
    const std::vector<std::string> arguments = Split(run.parameters(), " ");
    return WithBackslash(arguments.at(5)) + arguments.at(2) + ".dmp";
  }

  std::string Data(std::string_view name) {
    return machine.FileBytes(std::string{kData} + std::string{name}).value_or("<none>");
  }
};

}  // namespace ondura
