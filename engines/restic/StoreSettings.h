#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "engines/common/Client.h"

namespace ondura::engines {

// Beside the programs, for administrators alone: where users' backups go and how long they are kept.
inline constexpr std::string_view kEngineSettingsFile = "Engine.ini";

// How many snapshots to keep of the newest days, weeks and so on. All zero keeps everything.
struct Retention {
  int last = 0;
  int daily = 0;
  int weekly = 0;
  int monthly = 0;
  int yearly = 0;

  [[nodiscard]] bool KeepsAll() const { return last + daily + weekly + monthly + yearly <= 0; }
};

// What Engine.ini says for one user. A key of section [User NAME] goes before the same key of the common
// section:
//
//   [Store]      Repository=  where the backups go; {server}, {port} and {account} stand for the profile's
//   values.
//                             Default: <data folder>Store\{account}
//                Authority=   file with the certificates that a server's own has to lead to
//                SshConfig=   configuration file for ssh
//                MaxBytes=    most bytes that the store may take up; 0 is no limit
//   [Limits]     UploadKiB=, DownloadKiB=  a second
//   [Retention]  Last=, Daily=, Weekly=, Monthly=, Yearly=
//   [Check]      Days=7       how often unused data is removed and a part of the store read; 0 is never
//                Parts=10     the store is read whole in so many checks
struct StoreSettings {
  std::string repository;    // as the transfer program takes it
  std::string store_folder;  // of the machine, with a backslash at its end; empty if the store is elsewhere
  std::string authority;
  std::string ssh_config;
  std::uint64_t max_bytes = 0;
  int upload_kib = 0;
  int download_kib = 0;
  Retention retention;
  int check_days = 7;
  int check_parts = 10;
  std::string error;  // not empty: why there is no store to work with
};

// Reads the file anew. A missing file gives the defaults.
StoreSettings ReadStoreSettings(Client& client, const Account& account);

// The first word of a repository on another machine ("sftp", "rest", "s3" ...). Empty for a folder.
std::string_view StoreKind(std::string_view repository);

}  // namespace ondura::engines
