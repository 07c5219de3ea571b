#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "engines/restic/ResticStore.h"

namespace ondura::engines {

// The time in a snapshot, as the clock of the machine showed it then. std::nullopt for a text that is not RFC
// 3339.
std::optional<LocalTime> TimeOfSnapshot(std::string_view text);

// The snapshot that a person means: "latest" or nothing, the beginning of an id, or a time "2026-11-23",
// "2026-11-23 22:05" or with seconds, which stands for the newest one that is not later. Null if there is
// none.
const ResticSnapshot* PickSnapshot(const std::vector<ResticSnapshot>& snapshots, std::string_view when);

// Shows every file and folder of a snapshot, in the order of their paths. False if the store failed; the
// store then has the reason.
bool ForEachNode(ResticStore& store, const std::string& snapshot_id,
                 const std::function<void(const ResticNode& node)>& visit);

}  // namespace ondura::engines
