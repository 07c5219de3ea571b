#pragma once

#include <string_view>

#include "platform/machine.h"
#include "profile/Installation.h"

namespace ondura {

// The two folders of an installation: the programs are in `install_folder`, and the data is where the install
// pointer there says, or in the same folder where it says nothing. Both end in a backslash.
void SettleFolders(const Machine& machine, Installation& installation, std::string_view install_folder);

// The folders, then Configuration.ini. False without a usable product configuration.
bool LoadInstallation(const Machine& machine, Installation& installation, std::string_view install_folder);

}  // namespace ondura
