#include <algorithm>
#include <array>

#include "ProfileKeys.h"
#include "text/text.h"

namespace ondura {

namespace {

constexpr ProfileKey Account(std::string_view name, std::string_view meaning, KeyShow show = KeyShow::kOpen) {
  return {name, KeyStore::kUserProfile, "Tolmera", KeyForm::kShifted, show, meaning};
}

constexpr ProfileKey Proxy(std::string_view name, std::string_view meaning, KeyShow show = KeyShow::kOpen) {
  return {name, KeyStore::kUserProfile, "Proxy", KeyForm::kShifted, show, meaning};
}

constexpr ProfileKey User(std::string_view section, std::string_view name, std::string_view meaning) {
  return {name, KeyStore::kUserProfile, section, KeyForm::kPlain, KeyShow::kOpen, meaning};
}

constexpr ProfileKey Shared(std::string_view section, std::string_view name, std::string_view meaning) {
  return {name, KeyStore::kSharedState, section, KeyForm::kPlain, KeyShow::kOpen, meaning};
}

constexpr std::array kKeys = {
    Account("username", "account name"),
    Account("password", "account password", KeyShow::kSecret),
    ProfileKey{"encpasswordnew", KeyStore::kUserProfile, "Tolmera", KeyForm::kBase64, KeyShow::kSecret,
               "encryption password"},
    Account("encpassword", "encryption password, older form", KeyShow::kSecret),
    Account("random", "the client's random number", KeyShow::kSecret),
    Account("serverip", "server address"),
    Account("port", "server port"),
    Account("APIEXCHANGE", "folder of the Exchange store dump"),
    Account("EXCHBRICK", "folder of the Exchange mailbox dump"),
    Account("ExchVersion", "version of Exchange Server"),
    Account("SQLTEMP", "folder of the SQL Server dump"),
    Account("SerNM", "SQL Server name"),
    Account("SqlUN", "SQL Server user"),
    Account("SqlPS", "SQL Server password", KeyShow::kSecret),
    Account("ScheduleDisable", "TRUE: the user's schedules don't run"),
    Account("SHUTDOWN", "1: switch the machine off after the job"),
    Account("AutoConnect", "1: dial before the first request"),
    Account("ISPName", "the connection to dial"),
    User("Tolmera", "IPAddres", "copy of the server address for other programs"),
    User("Tolmera", "OutPort", "copy of the port for other programs"),
    User("Tolmera", "TrayIconDay", "day of the next reset of the local database"),
    User("Tolmera", "TrayIconMonth", "month of that day"),
    User("Tolmera", "TrayIconYear", "year of that day"),
    Proxy("Proxyset", "whether a proxy is used"),
    Proxy("ProxyName", "proxy address"),
    Proxy("ProxyPort", "proxy port"),
    Proxy("ProxyUser", "proxy user"),
    Proxy("ProxyPass", "proxy password", KeyShow::kSecret),
    Proxy("ProxyAuthOn", "whether the proxy asks for a user"),
    Proxy("proxytypehttp", "HTTP proxy"),
    Proxy("proxytypesocks", "SOCKS proxy"),
    User("BackupStatus", "Status", "state of the user's backup; 5 asks for an abort"),
    User("BackupStatus", "RetValue", "result of the last engine run"),
    User("BackupStatus", "DLLStatus", "state of the engine run"),
    User("BackupStatus", "ProgStatus", "state of the progress display"),
    User("BackupStatus", "Paused", "pause flag"),
    User("BackupStatus", "Cancel", "1: cancel the running transfer"),
    User("BackupStatus", "LocalBackup", "progress of a dump or shadow-copy launch"),
    User("BackupStatus", "CompareListCount", "state of the compare list"),
    User("BackupStatus", "StatusCheckCount", "number of compare-list files"),
    User("BackupStatus", "SCount", "items skipped in the last run"),
    User("BackupStatus", "SchEndTime", "end of the last scheduled job"),
    User("BackupStatus", "BackupFailureDays", "failed jobs in a row"),
    User("BackupStatus", "DesktopNotification", "0: no message on the desktop"),
    User("BackupStatus", "StatusWindow", "1: the tray shows the result"),
    User("BackupStatus", "StatusMessageIndicaton", "which message the tray shows"),
    User("REALTIME", "ScannerId", "process of the scanner"),
    User("REALTIME", "WatcherStatus", "1: the watcher is on"),
    User("REALTIME", "scanStatus", "1: a scan is running"),
    User("REALTIME", "DriveList", "drives of the machine"),
    User("QuotaStatus", "Max", "bytes allowed; 1: a gigabyte is left"),
    User("QuotaStatus", "Used", "bytes used"),
    User("Server", "MultipleIP", "machine whose backup holds the account"),
    User("sj", "LSN", "emptied at the start of a job"),
    Shared("Tolmera", "Started", "1: a scheduled job runs"),
    Shared("Tolmera", "Scheduled", "user of the last scheduled job"),
    Shared("Tolmera", "Interactive", "user of an interactive backup"),
    Shared("Tolmera", "IntBackup", "1: an interactive backup is wanted"),
    Shared("Tolmera", "Standard", "0: the service is in charge, 1: its background twin"),
    Shared("Tolmera", "RTBackup", "1: a continuous-backup pass runs"),
    Shared("Tolmera", "RealTimeBackup", "1: continuous backup is on"),
    Shared("Tolmera", "RTBPausedBySch", "pauses of continuous backup in force"),
    Shared("Tolmera", "PluginLaunch", "1: the plug-in has been registered"),
    Shared("Tolmera", "VSSTEMPPATH", "folder for shadow-copy work"),
    ProfileKey{"Default User name", KeyStore::kSharedState, "Registry", KeyForm::kShiftedValue,
               KeyShow::kOpen, "the default user"},
    Shared("Registry", "OnduraE client", "the install folder"),
    Shared("Registry", "CurrentUser", "user of the tray application"),
    Shared("Registry", "NextTransfer", "the next wake-up time"),
    Shared("Registry", "STARTMISSEDSCH", "1: a missed occurrence runs late"),
    Shared("Registry", "StandbyBackup", "1 or empty: the wake-up time is published"),
    Shared("Registry", "StopSchedule", "1: jobs stop at the cut-off time"),
    Shared("Registry", "StopScheduleTime", "the cut-off time"),
    Shared("Registry", "Tray", "state of the tray application"),
    Shared("Registry", "Excluded", "1: the last scan met an exclusion"),
    Shared("Registry", "UNCCount", "number of mapped drives"),
    Shared("ScanType", "DB", "1 or empty: local database, otherwise compare list"),
};

}  // namespace

std::span<const ProfileKey> AllProfileKeys() { return kKeys; }

const ProfileKey* FindProfileKey(std::string_view name) {
  const auto found = std::ranges::find_if(kKeys, [&](const ProfileKey& key) {
    return key.name.size() == name.size() && EqualsIgnoringCase(key.name, name);
  });
  return found == kKeys.end() ? nullptr : &*found;
}

}  // namespace ondura
