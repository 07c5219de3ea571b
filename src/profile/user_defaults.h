#pragma once

#include <string_view>

#include "platform/machine.h"
#include "profile/Installation.h"

namespace ondura {

// The folders and files that a user has selected.
inline constexpr std::string_view kSelectionListFile = "atbkupfolderlist.txt";

// Copies the schedule and selection files that the folder of `user` lacks from the product's own folder,
// where those are that a new user starts with. A file that the user has stays as it is.
void CopyDefaults(const Machine& machine, const Installation& installation, std::string_view user);

}  // namespace ondura
