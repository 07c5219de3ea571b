#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "profile/user_defaults.h"
#include "reporting/Options.h"
#include "reporting/Progress.h"

// The files in the user's folder that one of component and engine writes and the other reads.
namespace ondura::engine_files {

// What is selected, for both.
inline constexpr std::string_view kSelectionList = kSelectionListFile;
inline constexpr std::string_view kAutomaticSelection = "AutoFileSelection.txt";

// From the component: the settings and the mapped drives of an engine that takes them from a file, the parts
// of the compare list, what it has left out, and the trace as a sign of life.
inline constexpr std::string_view kInput = "DLLInput.txt";
inline constexpr std::string_view kMappedDrives = "MappedDriveInput.txt";
inline constexpr std::string_view kCompareListFolder = "TempCom";
inline constexpr std::string_view kExcluded = "ExcludedFiles.txt";
inline constexpr std::string_view kJobTrace = kScheduleTraceFile;

// The part with this number, counted from 1.
inline std::string CompareListPart(std::int64_t number) {
  return std::string{kCompareListFolder} + "\\CompareListInput" + std::to_string(number) + ".txt";
}

// From the engine: port and address, the result in the older form, what it did in a transfer and how far it
// is, and its own trace.
inline constexpr std::string_view kPortOutput = "DLLOutput1.txt";
inline constexpr std::string_view kOutput = "DLLOutput.txt";
inline constexpr std::string_view kOutputInfo = "DLLOutputInfo.txt";
inline constexpr std::string_view kSent = "ToBackup.txt";
inline constexpr std::string_view kInSync = "noToBackup.txt";
inline constexpr std::string_view kProgress = kBackupProgressFile;
inline constexpr std::string_view kEngineTrace = "TraceFile.txt";
inline constexpr std::string_view kCompareListTrace = "CompareListTrace.txt";

// The local database, and the selection that it was made for.
inline constexpr std::string_view kDatabaseFolder = "LDB";
inline constexpr std::string_view kDatabase = "OnduraLDB.Ond";
inline constexpr std::string_view kDatabaseSelection = "atbkupfolderlistRealTime.txt";
inline constexpr std::string_view kDatabaseAutomaticSelection = "AutoFileSelectionRealTime.txt";

}  // namespace ondura::engine_files
