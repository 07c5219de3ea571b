#pragma once

#include <string_view>

#include "platform/Files.h"

namespace ondura {

// Replaces a whole file of records. A write that fails may leave the file cut short, and a full disk would
// cost the user every record: what was in the file is then put back, for which cutting it short has given up
// the room. False if the new bytes were not written; where not even the old ones could be, the file stays as
// the failure left it.
bool RewriteOrPutBack(Files& files, std::string_view path, std::string_view bytes);

}  // namespace ondura
