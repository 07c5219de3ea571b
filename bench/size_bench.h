#pragma once

#include <filesystem>

namespace ondura {

// Registers the size calculation of a generated tree, with some of it excluded, beside `du`, and the pauses
// that it makes. `root` is made by MakeTreeMachine and outlives the run.
void RegisterSizeCalculation(const std::filesystem::path& root);

}  // namespace ondura
