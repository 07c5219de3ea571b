#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace ondura {

// Where the component lives, which product it serves and whom it is serving: the values that every path,
// key and executable name is made of. One for each component instance.
struct Installation {
  // Folders; each ends in a backslash once the start-up has run.
  std::string ExeLocation;
  std::string VirtualPath;

  // The user being served: the system's own state, which callers from outside read too. A pass sets it for
  // each user in turn and leaves it at the one that is next; every path and key of a user is made with it at
  // the moment of use, so that a change between two reads shows in the second.
  std::string CurrentUser;

  // Read from Configuration.ini.
  std::int16_t ProductNumber = 0;
  std::string ProductName;
  std::string ProductInstallationName;
  std::string ExeGroup;
  std::string ProductCaption;
  std::string Language;
  std::string DomainName;

  // Derived by SetProductNames.
  std::string RegistryRoot;  // part of the product's names; no routine reads it
  std::string ProfileIniName;
  std::string BackgroundExe;
  std::string TrayExe;
  std::string ClientExe;
  std::string BackupSetSizeExe;
  std::string VssVista32Exe;
  std::string VssVista64Exe;

  // Addresses of the service, from the deployment.
  std::string DefaultServerAddress;
  std::string AlternateServerAddress;
  std::string DefaultPort;

  // The folder of `user`: data folder, product and user name with nothing between the last two.
  [[nodiscard]] std::string FolderOf(std::string_view user) const {
    return VirtualPath + ProductInstallationName + std::string{user};
  }

  [[nodiscard]] std::string UserFolder() const { return FolderOf(CurrentUser); }

  // A file of the current user, by its bare name.
  [[nodiscard]] std::string UserFile(std::string_view name) const {
    return UserFolder() + "\\" + std::string{name};
  }

  [[nodiscard]] std::string DataFile(std::string_view name) const { return VirtualPath + std::string{name}; }

  // The data folder as the working folder of a started program: without the trailing backslash.
  [[nodiscard]] std::string WorkingFolder() const {
    return VirtualPath.substr(0, VirtualPath.empty() ? 0 : VirtualPath.size() - 1);
  }
};

}  // namespace ondura
