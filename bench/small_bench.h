#pragma once

#include <filesystem>

namespace ondura {

// Registers one trace line and one profile read. `root` is a machine with the bench user on it.
void RegisterSmallMeasures(const std::filesystem::path& root);

}  // namespace ondura
