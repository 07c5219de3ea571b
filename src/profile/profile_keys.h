#pragma once

#include <span>
#include <string_view>

namespace ondura {

// Where a key is: in the profile of one user, in the state that all users of the machine share, or in the
// file that says where the data folder is. profile_paths.h has the files.
enum class KeyStore { kUserProfile, kSharedState, kInstallPointer };

// How it is kept: as it is; key and value shifted; the value alone shifted; the value in Base64.
enum class KeyForm { kPlain, kShifted, kShiftedValue, kBase64 };

// kSecret values are never shown.
enum class KeyShow { kOpen, kSecret };

struct ProfileKey {
  std::string_view name;
  KeyStore store = KeyStore::kUserProfile;
  std::string_view section;
  KeyForm form = KeyForm::kPlain;
  KeyShow show = KeyShow::kOpen;
  std::string_view meaning;

  [[nodiscard]] constexpr ProfileKey Spelled(std::string_view spelling) const {
    ProfileKey key = *this;
    key.name = spelling;
    return key;
  }

  // Where the operation called has the section itself.
  constexpr operator std::string_view() const { return name; }
};

// Every key of the profile by one constant. The core reads and writes them through Transfer and ProfileStore,
// by the operation that its store, section and form ask for.
namespace profile_keys {

inline constexpr std::string_view kMainSection = "Tolmera";
inline constexpr std::string_view kProxySection = "Proxy";
inline constexpr std::string_view kRegistrySection = "Registry";
inline constexpr std::string_view kScanSection = "ScanType";
inline constexpr std::string_view kServerSection = "Server";
inline constexpr std::string_view kStatusSection = "BackupStatus";
inline constexpr std::string_view kRealTimeSection = "REALTIME";
inline constexpr std::string_view kQuotaSection = "QuotaStatus";

constexpr ProfileKey Account(std::string_view name, std::string_view meaning, KeyShow show = KeyShow::kOpen) {
  return {name, KeyStore::kUserProfile, kMainSection, KeyForm::kShifted, show, meaning};
}

constexpr ProfileKey Proxy(std::string_view name, std::string_view meaning, KeyShow show = KeyShow::kOpen) {
  return {name, KeyStore::kUserProfile, kProxySection, KeyForm::kShifted, show, meaning};
}

constexpr ProfileKey User(std::string_view section, std::string_view name, std::string_view meaning) {
  return {name, KeyStore::kUserProfile, section, KeyForm::kPlain, KeyShow::kOpen, meaning};
}

constexpr ProfileKey Shared(std::string_view section, std::string_view name, std::string_view meaning) {
  return {name, KeyStore::kSharedState, section, KeyForm::kPlain, KeyShow::kOpen, meaning};
}

inline constexpr ProfileKey kUserName = Account("username", "account name");
inline constexpr ProfileKey kPassword = Account("password", "account password", KeyShow::kSecret);
inline constexpr ProfileKey kEncPasswordNew = {"encpasswordnew", KeyStore::kUserProfile,
                                               kMainSection,     KeyForm::kBase64,
                                               KeyShow::kSecret, "encryption password"};
inline constexpr ProfileKey kEncPassword =
    Account("encpassword", "encryption password, older form", KeyShow::kSecret);
inline constexpr ProfileKey kRandom = Account("random", "the client's random number", KeyShow::kSecret);
inline constexpr ProfileKey kServerIp = Account("serverip", "server address");
inline constexpr ProfileKey kPort = Account("port", "server port");
inline constexpr ProfileKey kApiExchange = Account("APIEXCHANGE", "folder of the Exchange store dump");
inline constexpr ProfileKey kExchBrick = Account("EXCHBRICK", "folder of the Exchange mailbox dump");
inline constexpr ProfileKey kExchVersion = Account("ExchVersion", "version of Exchange Server");
inline constexpr ProfileKey kSqlTemp = Account("SQLTEMP", "folder of the SQL Server dump");
inline constexpr ProfileKey kSqlServer = Account("SerNM", "SQL Server name");
inline constexpr ProfileKey kSqlUser = Account("SqlUN", "SQL Server user");
inline constexpr ProfileKey kSqlPassword = Account("SqlPS", "SQL Server password", KeyShow::kSecret);
inline constexpr ProfileKey kScheduleDisable =
    Account("ScheduleDisable", "TRUE: the user's schedules don't run");
inline constexpr ProfileKey kShutdown = Account("SHUTDOWN", "1: switch the machine off after the job");
inline constexpr ProfileKey kAutoConnect = Account("AutoConnect", "1: dial before the first request");
inline constexpr ProfileKey kIspName = Account("ISPName", "the connection to dial");

inline constexpr ProfileKey kIpAddress =
    User(kMainSection, "IPAddres", "copy of the server address for other programs");
inline constexpr ProfileKey kOutPort = User(kMainSection, "OutPort", "copy of the port for other programs");
inline constexpr ProfileKey kResetDay =
    User(kMainSection, "TrayIconDay", "day of the next reset of the local database");
inline constexpr ProfileKey kResetMonth = User(kMainSection, "TrayIconMonth", "month of that day");
inline constexpr ProfileKey kResetYear = User(kMainSection, "TrayIconYear", "year of that day");

inline constexpr ProfileKey kProxySet = Proxy("Proxyset", "whether a proxy is used");
inline constexpr ProfileKey kProxyName = Proxy("ProxyName", "proxy address");
inline constexpr ProfileKey kProxyPort = Proxy("ProxyPort", "proxy port");
inline constexpr ProfileKey kProxyUser = Proxy("ProxyUser", "proxy user");
inline constexpr ProfileKey kProxyPassword = Proxy("ProxyPass", "proxy password", KeyShow::kSecret);
inline constexpr ProfileKey kProxyAuthOn = Proxy("ProxyAuthOn", "whether the proxy asks for a user");
inline constexpr ProfileKey kProxyHttp = Proxy("proxytypehttp", "HTTP proxy");
inline constexpr ProfileKey kProxySocks = Proxy("proxytypesocks", "SOCKS proxy");

inline constexpr ProfileKey kStatus =
    User(kStatusSection, "Status", "state of the user's backup; 5 asks for an abort");
inline constexpr ProfileKey kRetValue = User(kStatusSection, "RetValue", "result of the last engine run");
inline constexpr ProfileKey kDllStatus = User(kStatusSection, "DLLStatus", "state of the engine run");
// The same key as its second writer spells it. Keys are found whatever their case, and the first write
// decides which bytes are in the file.
inline constexpr ProfileKey kDllStatusSecond = kDllStatus.Spelled("DllStatus");
inline constexpr ProfileKey kProgStatus = User(kStatusSection, "ProgStatus", "state of the progress display");
inline constexpr ProfileKey kPaused = User(kStatusSection, "Paused", "pause flag");
inline constexpr ProfileKey kCancel = User(kStatusSection, "Cancel", "1: cancel the running transfer");
inline constexpr ProfileKey kLocalBackup =
    User(kStatusSection, "LocalBackup", "progress of a dump or shadow-copy launch");
inline constexpr ProfileKey kCompareListCount =
    User(kStatusSection, "CompareListCount", "state of the compare list");
inline constexpr ProfileKey kStatusCheckCount =
    User(kStatusSection, "StatusCheckCount", "number of compare-list files");
inline constexpr ProfileKey kSkippedCount = User(kStatusSection, "SCount", "items skipped in the last run");
inline constexpr ProfileKey kSchEndTime = User(kStatusSection, "SchEndTime", "end of the last scheduled job");
inline constexpr ProfileKey kBackupFailureDays =
    User(kStatusSection, "BackupFailureDays", "failed jobs in a row");
inline constexpr ProfileKey kDesktopNotification =
    User(kStatusSection, "DesktopNotification", "0: no message on the desktop");
inline constexpr ProfileKey kStatusWindow =
    User(kStatusSection, "StatusWindow", "1: the tray shows the result");
inline constexpr ProfileKey kStatusMessage =
    User(kStatusSection, "StatusMessageIndicaton", "which message the tray shows");

inline constexpr ProfileKey kScannerId = User(kRealTimeSection, "ScannerId", "process of the scanner");
inline constexpr ProfileKey kWatcherStatus = User(kRealTimeSection, "WatcherStatus", "1: the watcher is on");
inline constexpr ProfileKey kScanStatus = User(kRealTimeSection, "scanStatus", "1: a scan is running");
inline constexpr ProfileKey kDriveList = User(kRealTimeSection, "DriveList", "drives of the machine");

inline constexpr ProfileKey kQuotaMax = User(kQuotaSection, "Max", "bytes allowed; 1: a gigabyte is left");
inline constexpr ProfileKey kQuotaUsed = User(kQuotaSection, "Used", "bytes used");

inline constexpr ProfileKey kMultipleIp =
    User(kServerSection, "MultipleIP", "machine whose backup holds the account");

inline constexpr ProfileKey kLsn = User("sj", "LSN", "emptied at the start of a job");

inline constexpr ProfileKey kStarted = Shared(kMainSection, "Started", "1: a scheduled job runs");
inline constexpr ProfileKey kScheduled = Shared(kMainSection, "Scheduled", "user of the last scheduled job");
inline constexpr ProfileKey kInteractive =
    Shared(kMainSection, "Interactive", "user of an interactive backup");
inline constexpr ProfileKey kIntBackup =
    Shared(kMainSection, "IntBackup", "1: an interactive backup is wanted");
// As a start of the component spells it.
inline constexpr ProfileKey kIntBackupAtStart = kIntBackup.Spelled("Intbackup");
inline constexpr ProfileKey kStandard =
    Shared(kMainSection, "Standard", "0: the service is in charge, 1: its background twin");
inline constexpr ProfileKey kRtBackup = Shared(kMainSection, "RTBackup", "1: a continuous-backup pass runs");
inline constexpr ProfileKey kRealTimeBackup =
    Shared(kMainSection, "RealTimeBackup", "1: continuous backup is on");
inline constexpr ProfileKey kRtbPausedBySch =
    Shared(kMainSection, "RTBPausedBySch", "pauses of continuous backup in force");
inline constexpr ProfileKey kPluginLaunch =
    Shared(kMainSection, "PluginLaunch", "1: the plug-in has been registered");
inline constexpr ProfileKey kVssTempPath = Shared(kMainSection, "VSSTEMPPATH", "folder for shadow-copy work");

inline constexpr ProfileKey kDefaultUser = {"Default User name", KeyStore::kSharedState,
                                            kRegistrySection,    KeyForm::kShiftedValue,
                                            KeyShow::kOpen,      "the default user"};
inline constexpr ProfileKey kInstallFolder = Shared(kRegistrySection, "OnduraE client", "the install folder");
inline constexpr ProfileKey kTrayUser =
    Shared(kRegistrySection, "CurrentUser", "user of the tray application");
inline constexpr ProfileKey kNextTransfer = Shared(kRegistrySection, "NextTransfer", "the next wake-up time");
inline constexpr ProfileKey kStartMissed =
    Shared(kRegistrySection, "STARTMISSEDSCH", "1: a missed occurrence runs late");
inline constexpr ProfileKey kStandbyBackup =
    Shared(kRegistrySection, "StandbyBackup", "1 or empty: the wake-up time is published");
inline constexpr ProfileKey kStopSchedule =
    Shared(kRegistrySection, "StopSchedule", "1: jobs stop at the cut-off time");
inline constexpr ProfileKey kStopScheduleTime =
    Shared(kRegistrySection, "StopScheduleTime", "the cut-off time");
inline constexpr ProfileKey kTray = Shared(kRegistrySection, "Tray", "state of the tray application");
inline constexpr ProfileKey kExcluded =
    Shared(kRegistrySection, "Excluded", "1: the last scan met an exclusion");
inline constexpr ProfileKey kUncCount = Shared(kRegistrySection, "UNCCount", "number of mapped drives");

inline constexpr ProfileKey kLocalDatabase =
    Shared(kScanSection, "DB", "1 or empty: local database, otherwise compare list");

// Not a key that people set: programs alone read and write it.
inline constexpr ProfileKey kDataFolder = {"VirtualPath",    KeyStore::kInstallPointer,
                                           kRegistrySection, KeyForm::kPlain,
                                           KeyShow::kOpen,   "the data folder"};

}  // namespace profile_keys

// The values of kDllStatus: how far the run of the engine came for those who read it afterwards.
namespace run_state {

inline constexpr std::string_view kNotBegun = "0";
inline constexpr std::string_view kEndedByMessage = "3";
inline constexpr std::string_view kTransfer = "4";

}  // namespace run_state

// The keys that people may look at, in the order in which they look for them.
std::span<const ProfileKey> AllProfileKeys();

// By name, whatever its letter case; null for an unknown name.
const ProfileKey* FindProfileKey(std::string_view name);

}  // namespace ondura
