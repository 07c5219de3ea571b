#pragma once

#include <string>
#include <string_view>

#include "backupset/FolderWalk.h"
#include "platform/machine.h"

namespace ondura {

// "C:\" of a path that begins with a drive.
std::string RootOf(std::string_view path);

// How many bytes lie on the drive that `path` begins with: on a fixed drive what its volume has in use, on
// another what its folders and files add up to. 0 for a drive that is not ready.
double UsedBytes(const Machine& machine, FolderWalk& walk, std::string_view path);

}  // namespace ondura
