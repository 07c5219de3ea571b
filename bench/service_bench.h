#pragma once

#include <cstddef>
#include <filesystem>

namespace ondura {

// A configured machine with that many users, each with one occurrence that is far off.
void MakeServiceMachine(const std::filesystem::path& root, std::size_t users);

// Registers an idle pass over the users of a machine, as the time of each user.
void RegisterIdlePass(const std::filesystem::path& root, std::size_t users);

// Registers the start of the host beside this program, up to the end of its first tick.
void RegisterHostStart(const std::filesystem::path& root);

}  // namespace ondura
