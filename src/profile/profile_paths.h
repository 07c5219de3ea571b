#pragma once

#include <string>
#include <string_view>

#include "profile/Installation.h"

namespace ondura {

// Files of the install folder, of the data folder and of a user's folder that more than one program or room
// knows by name, and where the profile's ini files are. What component and engine share is in
// engine/engine_files.h.

inline constexpr std::string_view kDeploymentFile = "Deployment.ini";

inline constexpr std::string_view kConfigurationFile = "Configuration.ini";
inline constexpr std::string_view kUserListFile = "userlist.ini";

inline constexpr std::string_view kSessionFolder = "Session";
inline constexpr std::string_view kStatusTextFile = "SchStatus.txt";
inline constexpr std::string_view kErrorTextFile = "SchStatusError.txt";
inline constexpr std::string_view kScheduleInfoFile = "scheduleInfo.txt";
inline constexpr std::string_view kSkippedFilesFile = "SkippedFiles.txt";
inline constexpr std::string_view kSystemStateLogFile = "STBTraceFile.txt";

// The profile of `user`.
inline std::string UserProfilePath(const Installation& installation, std::string_view user) {
  return installation.FolderOf(user) + "\\" + installation.ProductInstallationName + ".ini";
}

inline std::string SharedStatePath(const Installation& installation) {
  return installation.VirtualPath + "UserName.ini";
}

// Holds the one value that says where the data folder is.
inline std::string InstallPointerPath(const Installation& installation) {
  return installation.ExeLocation + "UserName.ini";
}

inline std::string PluginFilePath(const Installation& installation) {
  return installation.VirtualPath + installation.ProductName + "Search.ini";
}

}  // namespace ondura
