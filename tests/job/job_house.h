#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "job/AbortForms.h"
#include "job/Connection.h"
#include "job/JobContext.h"
#include "job/JobDriver.h"
#include "profile/LightCiphers.h"
#include "support/CheckedMachine.h"
#include "text/utf16.h"

namespace ondura {

// A machine with one user and what the job's units are made of, without a service around them.
struct JobHouse {
  JobHouse() {
    installation.ExeLocation = "C:\\exe\\";
    installation.VirtualPath = "C:\\all data\\";
    installation.ProductInstallationName = "Acme";
    installation.ProfileIniName = "\\Acme.ini";
    installation.DomainName = "backup.example";
    installation.ClientExe = "OxClsClient.exe";
    installation.DefaultPort = "11905";
    installation.DefaultServerAddress = "first.example";
    installation.CurrentUser = "ann";
    machine.PutFolder(UserFile("Session"));
  }

  std::string UserFile(std::string_view name) const { return installation.UserFile(name); }

  std::string Bytes(const std::string& path) { return machine.FileBytes(path).value_or("<none>"); }
  std::string Text(std::string_view name) {
    const std::string bytes = Bytes(UserFile(name));
    return bytes.starts_with(kUtf16Mark) ? FromUtf16(bytes) : bytes;
  }
  void SetProfile(std::string_view section, std::string_view key, std::string_view value) {
    machine.WriteIni(UserFile("Acme.ini"), section, key, value);
  }
  std::string Status(std::string_view key) {
    return machine.ReadIni(UserFile("Acme.ini"), "BackupStatus", key);
  }

  struct NoShadowCopy : ShadowCopyRelease {
    void CloseVSS() override { ++closed; }
    int closed = 0;
  };
  struct NoStages : Stages {
    Stage* ForKind(std::optional<JobKind>) override { return stage; }
    Stage* stage = nullptr;
  };

  TidyMachine machine;
  const Machine& ports = machine.machine();
  Installation installation;
  Options options{ports, installation};
  Trace trace{options, ports.clock};
  Transfer transfer{ports, installation};
  ProfileStore store{ports, installation};
  LightCiphers ciphers{ports.code_page, ports.pump};
  MachineFacts facts{ports, options};
  Programs programs{ports, facts, options};
  SessionLog session_log{ports, installation};
  Progress progress{ports, installation, transfer};
  DBaction schedule_file{ports, installation, trace};
  Scheduler scheduler{ports, trace, transfer, schedule_file};
  ResetDate reset_date{ports.clock, store, transfer};
  MappedDrives mapped_drives{ports.drives, transfer};
  LocalDatabase local_database{ports, installation, transfer, store, reset_date, programs, trace};
  NoShadowCopy shadow_copy;
  NoStages stages;
  JobServices services{ports,    installation,   transfer,      store,       trace,
                       programs, facts,          schedule_file, scheduler,   session_log,
                       progress, local_database, mapped_drives, shadow_copy, stages};
  JobContext job{services};
  AbortForms abort{job};
  Connection connection{job, abort};
};

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
