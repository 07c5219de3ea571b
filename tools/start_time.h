#pragma once

#include <optional>
#include <string_view>

#include "platform/local_time.h"

namespace ondura {

// The time that the words of --at mean: "now", "12:30", "tomorrow 12:30", "mon 12:30", "monday 12:30" or
// "2090-11-14 12:30". A time without a date is the next one that has not gone by, the present minute
// included. std::nullopt for other words.
std::optional<LocalTime> ParseStartTime(std::string_view text, LocalTime now);

}  // namespace ondura
