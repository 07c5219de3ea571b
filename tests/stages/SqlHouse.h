#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "profile/LightCiphers.h"
#include "scenarios/House.h"
#include "stages/SqlDump.h"
#include "stages/SqlServerStage.h"
#include "text/text.h"

namespace ondura {

// A house whose user ann has two databases to be backed up by a job that is due, on a system where the job
// dumps them itself. Its dump tool takes three seconds and writes the dump.
class SqlHouse : public DueHouse {
 public:
  static constexpr std::string_view kTool = "C:\\ProgramData\\Ondura\\tolmera_sqlbackup.exe";

  SqlHouse() : DueHouse(Mailing("2")) {
    using namespace std::chrono_literals;
    LightCiphers ciphers(machine.outside().code_page, machine.outside().pump);
    WriteRegistry("Default User name", ciphers.ShiftEncode("ann"));
    WriteAccount("SQLTEMP", "C:\\Dumps\\");
    machine.PutFolder("C:\\Dumps");
    machine.PutFolder(UserPath("Session"));
    PutText("atbkupfolderlist.txt", "");
    PutBackupSet("SQLSERVERBACKUP;sales; ;hr\r\n");
    IsVista(false);
    machine.InstallProgram(kTool, [this](ProgramRun& run) {
      run.AppearsAfter(100ms);  // a slow start
      run.After(3s, [this, &run] { machine.PutFile(DumpOf(run), "rows"); });
    });
  }

  void IsVista(bool vista) {
    machine.surroundings().version = vista ? SystemVersion{2, 6, 1, true} : SystemVersion{2, 5, 1, true};
  }
  void PutBackupSet(std::string_view text) { machine.PutFile(UserPath("BackupSetData.txt"), text); }

  static std::string Argument(const ProgramRun& run, std::size_t at) {
    return Split(run.parameters(), " ").at(at);
  }
  static std::string DumpOf(const ProgramRun& run) {
    return WithBackslash(Argument(run, 5)) + Argument(run, 2) + ".dmp";
  }

  std::string Data(std::string_view name) {
    return machine.FileBytes(std::string{kData} + std::string{name}).value_or("<none>");
  }

  // The user's trace without the times that its lines begin with.
  std::vector<std::string> Trace() {
    std::vector<std::string> lines;
    for (const std::string& line : LinesOf(Text("ScheduleTraceFile.txt"))) {
      const bool has_time = line.size() >= 19 && line[2] == '-' && line[16] == ':';
      lines.push_back(has_time ? line.substr(19) : line);
    }
    return lines;
  }

  // The lines from the start of the stage to the start of the connection.
  std::vector<std::string> StageTrace() {
    std::vector<std::string> lines;
    bool inside = false;
    for (const std::string& line : Trace()) {
      if (line.starts_with("  Sch_IPAddress")) inside = false;
      if (inside) lines.push_back(line);
      if (line.starts_with("Cont_SchBackup : schvTemp.recordno :: 2")) inside = true;
    }
    return lines;
  }
};

}  // namespace ondura
