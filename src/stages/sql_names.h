#pragma once

#include <string_view>

namespace ondura::sql_names {

// The line of the backup set that names the databases.
inline constexpr std::string_view kKeyword = "SQLSERVERBACKUP";

// The dump tool in the data folder, for every product.
inline constexpr std::string_view kTool = "tolmera_sqlbackup.exe";

// Files of the user's folder.
inline constexpr std::string_view kStageLog = "SQLTraceFile.txt";
inline constexpr std::string_view kErrorFile = "SQLErrorBackupFile.txt";

// Files of the data folder; the status file lies in the status folder.
inline constexpr std::string_view kDumpList = "SQLBackupData.txt";
inline constexpr std::string_view kStatusFolder = "OXWIN";
inline constexpr std::string_view kStatusFile = "SQLScheduleStatus.txt";
inline constexpr std::string_view kLaunchStatusFile = "OxWin\\SqlLaunchStatus.txt";
inline constexpr std::string_view kLaunchCommandFile = "OxWin\\SQlLaunchCmd.txt";

// The key by which the job asks the elevated host for the dumps, and its values.
inline constexpr std::string_view kAsked = "1";
inline constexpr std::string_view kDumped = "100";
inline constexpr std::string_view kWithdrawn = "0";

// Words of the status file.
inline constexpr std::string_view kRunning = "1";
inline constexpr std::string_view kStop = "2";
inline constexpr std::string_view kIdle = "0";

}  // namespace ondura::sql_names
