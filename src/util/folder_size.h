#pragma once

#include <cstdint>
#include <string>

#include "platform/Folders.h"

namespace ondura {

// Bytes of all files below the folder; 0 if it does not exist.
std::uint64_t SizeOfFolder(Folders& folders, const std::string& folder);

}  // namespace ondura
