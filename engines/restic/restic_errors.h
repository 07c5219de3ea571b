#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "engine/engine_results.h"

namespace ondura::engines {

// How far a run of restic had come when it ended without a success.
enum class ResticPhase { kEntering, kTransferring };

// What restic's words on its errors mean, and its exit code where newer versions have one of their own for
// it. restic 0.14 ends with 1 for nearly everything. `own_host` tells the lock of this machine from
// another's.
EngineResult ResultOfWords(std::string_view words, std::uint32_t exit_code, ResticPhase phase,
                           std::string_view own_host);

// The host that holds the lock, as restic names it. Empty if the words name none.
std::string LockHolder(std::string_view words);

// Whether the words say that nothing is at the location: no repository, or no folder.
bool SaysNoRepository(std::string_view words, std::uint32_t exit_code);

}  // namespace ondura::engines
