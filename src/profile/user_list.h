#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/machine.h"

namespace ondura {

// The names of userlist.ini in `folder`, which ends in a backslash. False for a missing file, with `list` as
// it was.
//
// Names are joined by ";". Every line replaces the list, so the last line counts, and an empty file leaves
// the list as it was. A closing ";" gives a last, empty name, and so does an empty last line.
bool ReadUserList(const Machine& machine, std::string_view folder, std::vector<std::string>& list);

}  // namespace ondura
