#include "product.h"

#include "host_error.h"
#include "platform/win32/win32_machine.h"
#include "profile/ProductConfiguration.h"
#include "profile/ProfileStore.h"
#include "util/text.h"

namespace ondura {

Product ReadProduct(std::string_view install_folder) {
  const auto owner = MakeWin32Machine();
  Installation installation;
  installation.ExeLocation = WithBackslash(install_folder);
  const std::string data_folder{
      Trim(ProfileStore(owner->machine(), installation).ReadInstallRegistryValue("VirtualPath"))};
  installation.VirtualPath = data_folder.empty() ? installation.ExeLocation : WithBackslash(data_folder);
  if (!ProductConfiguration(owner->machine(), installation).LoadProductConfiguration()) {
    throw HostError("no usable product configuration in " + installation.DataFile("Configuration.ini") +
                        ". Install the product, or name its install folder with --install.",
                    kExitUsage);
  }
  return {installation.ProductInstallationName + " Service", installation.BackgroundExe};
}

}  // namespace ondura
