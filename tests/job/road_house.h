#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "job/JobDriver.h"
#include "job_house.h"

namespace ondura {

// A house with an engine, whose user has a file job to run. The engine takes two seconds for a command and
// answers with 402 unless a test says otherwise.
struct RoadHouse : JobHouse {
  using Command = std::function<void(ProgramRun&)>;

  static constexpr const char* kEngine = "C:\\exe\\OxClsClient.exe";
  static constexpr const char* kManager = "C:\\exe\\OnduraSDBManager.exe";
  static constexpr const char* kHead = " \r\nUsername: ann\r\nOperation: Scheduled\r\n";

  RoadHouse() {
    installation.ExeGroup = "Ox";
    installation.AlternateServerAddress = "second.example";
    machine.InstallProgram(kEngine, [this](ProgramRun& run) {
      commands.push_back(std::stoi(run.parameters()));
      const auto script = scripts.find(commands.back());
      script == scripts.end() ? Answer(run, 402) : script->second(run);
    });
    machine.InstallProgram(kManager, [](ProgramRun& run) { run.NeverEnds(); });
    transfer.Trf_WriteUserProfile("encpassword", "key");
    transfer.Trf_WriteUserProfile("serverip", "localhost");
    transfer.Trf_WriteUserProfile("port", "11905");
    transfer.Trf_WriteUserNameDBProfile("DB", "0");
    SetStatus("BackupFailureDays", "4");
    schedule_file.ScheduleFilePath = UserFile("scheduleData.txt");
    schedule_file.schvTemp.recordno = "1";
    machine.PutFile("C:\\Docs\\a.txt", "hello");
    PutText("atbkupfolderlist.txt", "C:\\Docs\\\r\n");
  }

  void SetStatus(std::string_view key, std::string_view value) { SetProfile("BackupStatus", key, value); }
  void PutText(std::string_view name, std::string_view text) {
    machine.PutFile(UserFile(name), std::string{kUtf16Mark} + ToUtf16(text));
  }
  std::string Ini(std::string_view file, std::string_view section, std::string_view key) {
    return machine.ReadIni(UserFile(file), section, key);
  }

  // The engine ends after `delay` with this result and whatever else happens then.
  void Answer(
      ProgramRun& run, int result, std::chrono::milliseconds delay = std::chrono::seconds{2},
      const std::function<void()>& act = [] {}) {
    run.After(delay, [this, result, act] {
      SetStatus("RetValue", std::to_string(result));
      act();
    });
  }
  void OnCommand(int command, Command script) { scripts[command] = std::move(script); }

  JobCode Run() { return driver.Cont_SchBackup(); }

  std::vector<int> commands;
  std::map<int, Command> scripts;
  JobDriver driver{job};
};

}  // namespace ondura
