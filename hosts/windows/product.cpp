#include "product.h"

#include "HostError.h"
#include "machines/win32/Win32Machine.h"
#include "profile/installation_folders.h"
#include "profile/profile_keys.h"
#include "profile/profile_paths.h"

namespace ondura {

Installation ReadInstallation(std::string_view install_folder) {
  const auto owner = MakeWin32Machine();
  Installation installation;
  if (!LoadInstallation(owner->machine(), installation, install_folder)) {
    throw HostError("no usable product configuration in " + installation.DataFile(kConfigurationFile) +
                        ". Install the product, or name its install folder with --install.",
                    kExitUsage);
  }
  return installation;
}

Product ReadProduct(std::string_view install_folder) {
  const Installation installation = ReadInstallation(install_folder);
  return {installation.ProductInstallationName, installation.ProductInstallationName + " Service",
          installation.BackgroundExe};
}

std::string DataFolder(std::string_view install_folder) {
  const auto owner = MakeWin32Machine();
  Installation installation;
  SettleFolders(owner->machine(), installation, install_folder);
  return installation.VirtualPath;
}

void PrepareSharedState(std::string_view install_folder) {
  const auto owner = MakeWin32Machine();
  Installation installation;
  SettleFolders(owner->machine(), installation, install_folder);
  ProfileFiles& profiles = owner->machine().profiles;
  const std::string file = SharedStatePath(installation);
  if (!profiles.ReadString({file, profile_keys::kStandard.section, profile_keys::kStandard}).empty()) return;
  const bool written =
      profiles.WriteString({file, profile_keys::kStandard.section, profile_keys::kStandard}, "0") &&
      profiles.WriteString({file, profile_keys::kStarted.section, profile_keys::kStarted}, "0");
  if (!written) throw HostError("can't write " + file + "; look at the rights of its folder.");
}

}  // namespace ondura
