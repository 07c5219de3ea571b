#pragma once

#include <string_view>

namespace ondura::job_texts {

inline constexpr std::string_view kUserAbort =
    "You have aborted the scheduled backup job that was in progress.";
inline constexpr std::string_view kManualCancel =
    "All your files/folders could not be backed up as the scheduled job was manually canceled.";
inline constexpr std::string_view kUnableToPerform =
    "Unable to perform scheduled backup. Possible reasons include:\r\n"
    "1. No internet connection.\r\n"
    "2. Firewall has denied access to the Ondura application.";
inline constexpr std::string_view kHardStopStatus =
    "The backup job has been stopped due to hard stop option set by you. The backup will resume at next "
    "scheduled time.";
inline constexpr std::string_view kHardStopResult =
    "The scheduled job has been stopped due to the Cut Off time set in Scheduler Options. The backup will "
    "resume at the next scheduled time.";
inline constexpr std::string_view kHardStopTrace =
    " The scheduled job has been stopped due to hard stop option set by you. The backup will resume at next "
    "scheduled time.";
inline constexpr std::string_view kCannotClearResult =
    "The scheduled backup could not begin since the user's profile can't be written. Please check if the "
    "disk is full or write protected.";
inline constexpr std::string_view kNothingChanged =
    "Please note that all the items selected for backup (from your backup set) have already been backed up "
    "and the files have not changed since your last backup.";
inline constexpr std::string_view kNothingSelected = "Please select one or more file(s)/folder(s) to backup.";
inline constexpr std::string_view kNothingChangedTrace =
    "  Please note that all items selected for backup in your backup set have already been backed up and the "
    "files haven't changed since your last backup. Err No = ";

inline constexpr std::string_view kBadEncryptionPassword =
    "You have not entered a valid encryption password. Due to this, the backup operation could not be "
    "commenced.";
inline constexpr std::string_view kBadPassword =
    "Backup failed. The possible reasons may include: \r\nIncorrect password was entered.";
inline constexpr std::string_view kNoPortInformation = "Unable to get port information.";
inline constexpr std::string_view kConnectionFailed =
    "Connection Failed. Unable to connect to the server. Try later.";
inline constexpr std::string_view kConnectionReason =
    "Connection failed. Could not establish connection with the server.";
inline constexpr std::string_view kProxyFailure =
    "Backup Failed. You might be behind a proxy server.  Recheck the proxy ip address/port number or if the "
    "proxy server is enabled to accept connections. You might want to check with your systems administrator.";
// The product's own name takes the place of kProductWord.
inline constexpr std::string_view kDamagedInstallation =
    "Install Ondura again to enable the application to work correctly";
inline constexpr std::string_view kProductWord = "Ondura";

inline constexpr std::string_view kAllExcluded =
    "Please note that the file(s)/folder(s) you have chosen to backup have been excluded from backup in the "
    "'Backup' pane.";
inline constexpr std::string_view kExcludedTrace =
    "  Please note that the file(s)/folder(s) you have chosen to backup has been excluded from backup in the "
    "'Backup' pane. This means that the backup of this particular file(s)/folder(s) will not take place. Err "
    "No = ";
inline constexpr std::string_view kLocked =
    "The user data is locked due to a recent aborted session. Please try after a few minutes.";
inline constexpr std::string_view kSomeFailed = "One or More files could not be backed up.";
inline constexpr std::string_view kListNotWritten =
    "The list of the files to back up could not be written. Free some space on the drive of the data folder "
    "and look at the rights of the user's folder.";
// The address of the other machine takes the place of kAddressGap.
inline constexpr std::string_view kRunsElsewhere =
    "Backup is in progress from the ip address ------  Wait till it is complete to begin the backup on this "
    "machine.";
inline constexpr std::string_view kAddressGap = "------";

inline constexpr std::string_view kQuotaUsedUp =
    "Your data could not be backed up as you have utilized the allocated quota. Upgrade and try again.";
inline constexpr std::string_view kQuotaStop =
    "Your quota has exceeded the allocated limit. Please upgrade your account.";

inline constexpr std::string_view kBackupFailed = "Backup has failed.";
inline constexpr std::string_view kViewLog = "View the log to know the status of the backup job.";

// The traces of the abort tests, one for each place on the road.
inline constexpr std::string_view kAborted28 = "User aborted scheduled backup 28 in progress";
inline constexpr std::string_view kAbortedPort =
    "User aborted scheduled backup (After getting port information)";
inline constexpr std::string_view kAbortedBefore28 = "User aborted scheduled backup before 28 finishes";
inline constexpr std::string_view kAbortedContents = "User aborted scheduled backup (After getting contents)";
inline constexpr std::string_view kAbortedInput =
    "User aborted scheduled backup (After preparing CompareList Input)";

}  // namespace ondura::job_texts
