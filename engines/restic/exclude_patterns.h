#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ondura::engines {

// The line of a restic file of exclusions that matches exactly this path and what lies below it, whatever its
// letter case. Empty for a path that no line can name: one with a line break. `escapes_by_backslash` as
// SystemView has it.
std::string ExcludeLine(std::string_view full_path, bool escapes_by_backslash);

// The pattern of restic that matches exactly this path, for its command line.
std::string ExactPattern(std::string_view path, bool escapes_by_backslash);

}  // namespace ondura::engines
