#pragma once

#include <string>

namespace ondura {

// Leaves the data folder, which is made when it is missing, to the system and to administrators: the service
// starts programs and takes commands from it. Others read the folder and the files directly in it, no user's
// folder. What somebody else has put there before changes hands, but the users' folders. Throws HostError.
void SecureDataFolder(const std::string& folder);

// Lets a Windows account change a folder and what is in it, or one file. Throws HostError.
void AllowToChange(const std::string& path, const std::string& account);

}  // namespace ondura
