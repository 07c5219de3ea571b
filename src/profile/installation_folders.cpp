#include "profile/installation_folders.h"

#include "profile/ProductConfiguration.h"
#include "profile/ProfileStore.h"
#include "text/text.h"

namespace ondura {

void SettleFolders(const Machine& machine, Installation& installation, std::string_view install_folder) {
  installation.ExeLocation = WithBackslash(install_folder);
  const std::string data_folder =
      ProfileStore(machine, installation).ReadInstallRegistryValue(profile_keys::kDataFolder);
  installation.VirtualPath = data_folder.empty() ? installation.ExeLocation : WithBackslash(data_folder);
}

bool LoadInstallation(const Machine& machine, Installation& installation, std::string_view install_folder) {
  SettleFolders(machine, installation, install_folder);
  return ProductConfiguration(machine, installation).LoadProductConfiguration();
}

}  // namespace ondura
