#pragma once

#include <string>
#include <string_view>

#include "profile/Installation.h"

namespace ondura {

// What the hosts are called for the product that is installed.
struct Product {
  std::string name;            // such as "Ondura"
  std::string service_name;    // such as "Ondura Service"
  std::string background_exe;  // such as "OnduraBackground.exe"
};

// Read from the product configuration of the install folder. A host without a product would loop over
// nothing, so a missing configuration throws HostError.
Product ReadProduct(std::string_view install_folder);

// The product's folders and names. Throws HostError as ReadProduct does.
Installation ReadInstallation(std::string_view install_folder);

// The folder with the users' data, with its backslash, as the component finds it.
std::string DataFolder(std::string_view install_folder);

// Lets the service begin in charge and idle where nobody has been in charge so far: it would look for a twin
// for a minute otherwise. Throws HostError.
void PrepareSharedState(std::string_view install_folder);

}  // namespace ondura
