#pragma once

#include <string>
#include <string_view>

#include "platform/machine.h"

namespace ondura {

// The long form of a path with 8.3 names; the path itself if there is none. What the machine can't know
// at once is rebuilt part by part: each with a "~" is looked for by its short name in its folder, and stays
// as it is where it is not found.
std::string GetLongPath(const Machine& machine, std::string_view sPath);

}  // namespace ondura
