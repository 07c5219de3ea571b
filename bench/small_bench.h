#pragma once

#include <filesystem>

namespace ondura {

// Registers one trace line, one profile read, the same read in a damaged file of 10 MB, and many files made
// in one folder. `root` is a machine with the bench user on it.
void RegisterSmallMeasures(const std::filesystem::path& root);

}  // namespace ondura
