#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "engines/common/Client.h"

namespace ondura::engines {

// Beside the programs, for administrators alone: where users' backups go and how long they are kept.
inline constexpr std::string_view kEngineSettingsFile = "Engine.ini";

// Its names, for who reads it and who writes it.
namespace engine_settings {
inline constexpr std::string_view kStore = "Store";
inline constexpr std::string_view kRepository = "Repository";
inline constexpr std::string_view kAuthority = "Authority";
inline constexpr std::string_view kSshConfig = "SshConfig";
inline constexpr std::string_view kMaxBytes = "MaxBytes";
inline constexpr std::string_view kLimits = "Limits";
inline constexpr std::string_view kUploadKib = "UploadKiB";
inline constexpr std::string_view kDownloadKib = "DownloadKiB";
inline constexpr std::string_view kRetention = "Retention";
inline constexpr std::string_view kLast = "Last";
inline constexpr std::string_view kDaily = "Daily";
inline constexpr std::string_view kWeekly = "Weekly";
inline constexpr std::string_view kMonthly = "Monthly";
inline constexpr std::string_view kYearly = "Yearly";
inline constexpr std::string_view kCheck = "Check";
inline constexpr std::string_view kDays = "Days";
inline constexpr std::string_view kParts = "Parts";

// The section with one user's own values.
inline std::string OfUser(std::string_view user) { return "User " + std::string{user}; }
}  // namespace engine_settings

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

// Whether the text is a path of the machine: with a drive, or of a share.
bool IsMachinePath(std::string_view text);

// The first word of a repository on another machine ("sftp", "rest", "s3" ...). Empty for a folder.
std::string_view StoreKind(std::string_view repository);

}  // namespace ondura::engines
