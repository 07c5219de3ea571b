#pragma once

#include <string>
#include <vector>

namespace ondura {

// What Windows' registry holds about the hosts. Each throws HostError.

// The names under which programs write to the event log, with this program's message table.
void AddEventSources(const std::vector<std::string>& names);
void RemoveEventSources(const std::vector<std::string>& names);

// Where the product is, for the installer of the next version.
void RememberFolders(const std::string& product, const std::string& install_folder,
                     const std::string& data_folder);

}  // namespace ondura
