#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "backupset/Exclusions.h"
#include "backupset/StopCheck.h"
#include "reporting/Trace.h"
#include "support/CheckedMachine.h"
#include "text/utf16.h"
#include "util/Programs.h"
#include "util/TextFiles.h"

namespace ondura {

// A machine with one user, and what the units of the backup set are made of.
struct BackupSetHouse {
  BackupSetHouse() {
    installation.ExeLocation = "C:\\exe\\";
    installation.VirtualPath = "C:\\data\\";
    installation.ProductInstallationName = "Acme";
    installation.ExeGroup = "Ox";
    installation.ClientExe = "OxClsClient.exe";
    installation.CurrentUser = "ann";
    machine.PutFolder(kFolder);
  }

  static constexpr std::string_view kFolder = "C:\\data\\Acmeann";

  std::string UserFile(std::string_view name) const { return installation.UserFile(name); }

  void PutList(std::string_view name, std::string_view text) {
    machine.PutFile(UserFile(name), std::string{kUtf16Mark} + ToUtf16(text));
  }

  // The text after the byte-order mark; a file without one, or none, says so.
  std::string List(std::string_view name) {
    const auto bytes = machine.FileBytes(UserFile(name));
    if (!bytes) return "(no file)";
    return bytes->starts_with(kUtf16Mark) ? FromUtf16(*bytes) : "(no mark)";
  }

  std::string Profile(std::string_view section, std::string_view key) {
    return machine.ReadIni(UserFile("Acme.ini"), section, key);
  }
  void SetProfile(std::string_view section, std::string_view key, std::string_view value) {
    machine.WriteIni(UserFile("Acme.ini"), section, key, value);
  }
  std::string Shared(std::string_view section, std::string_view key) {
    return machine.ReadIni("C:\\data\\UserName.ini", section, key);
  }

  TidyMachine machine;
  Installation installation;
  Options options{machine.machine(), installation};
  Trace trace{options, machine.machine().clock};
  MachineFacts facts{machine.machine(), options};
  Programs programs{machine.machine(), facts, options};
  Transfer transfer{machine.machine(), installation};
  ProfileStore profile{machine.machine(), installation};
  Exclusions exclusions{machine.machine(), installation, transfer};
  bool stop_flag = false;
  StatusStopCheck stop{machine.machine(), installation, stop_flag};
};

}  // namespace ondura
