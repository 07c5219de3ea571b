#pragma once

#include <string>

namespace ondura {

// Profiles hold passwords that are only made unreadable at a glance, and dumps hold people's data: what this
// process and those that it starts make from now on is for their own account alone. For the start of a main
// function.
void KeepFilesPrivate();

// Takes the rights of the group and of others from the machine's folder, which closes all below it to them.
// Says in one sentence what was done or could not be; empty if nothing had to be.
std::string MendFolderRights(const std::string& root);

}  // namespace ondura
