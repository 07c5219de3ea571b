#pragma once

#include <filesystem>

#include "bench/generated_tree.h"

namespace ondura {

// A machine whose user has selected a generated tree.
void MakeTreeMachine(const std::filesystem::path& root, const TreeSize& size);

// Builds the user's compare list once.
void BuildCompareList(const std::filesystem::path& root);

// Registers the build beside `find`, its system calls and its memory. `root` is made by MakeTreeMachine and
// outlives the run.
void RegisterCompareList(const std::filesystem::path& root, const TreeSize& size);

// Modes of this program for the measures that need a process of their own.
inline constexpr const char* kBuildMode = "--build-compare-list";
inline constexpr const char* kEmptyMode = "--do-nothing";

}  // namespace ondura
