#pragma once

#include <string>
#include <string_view>

#include "profile/Installation.h"

namespace ondura {

// Where the profile's ini files lie.

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
