#pragma once

#include <string>
#include <string_view>

#include "job/AbortForms.h"
#include "job/Connection.h"
#include "job/JobContext.h"
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

}  // namespace ondura
