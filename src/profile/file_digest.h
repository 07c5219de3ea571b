#pragma once

#include <string>
#include <string_view>

#include "platform/machine.h"

namespace ondura {

// The MD5 digest of the file as 32 lower-case hexadecimal digits. Empty for a file that is empty, missing,
// unreadable or of 2 GiB and more: the whole file is held in memory.
std::string FileMd5Hex(const Machine& machine, std::string_view sFilePath);

}  // namespace ondura
