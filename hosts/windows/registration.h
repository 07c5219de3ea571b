#pragma once

#include <string>

namespace ondura {

// Make the component in the install folder known to this system, or forget it. Throw HostError.
void RegisterComponent(const std::string& install_folder);
void UnregisterComponent(const std::string& install_folder);

// Notes in the install folder where the data folder is; with `keep` only where that is not noted yet. A name
// that the system code page lacks is refused: it would be read back as another.
void PointToData(const std::string& install_folder, const std::string& data_folder, bool keep);

}  // namespace ondura
