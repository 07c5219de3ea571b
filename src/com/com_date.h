#pragma once

#include <optional>

#include "com/automation.h"
#include "platform/local_time.h"

namespace ondura {

// Dates of Automation: days since 30 December 1899 with the time of day as the fraction, which counts up in
// days before that one too (https://learn.microsoft.com/dotnet/api/system.datetime.tooadate). 0 is not a
// date.

// To the nearest second. std::nullopt for 0 and for a number beyond the years 100 to 9999.
std::optional<LocalTime> TimeOf(DATE date);

DATE DateOf(const std::optional<LocalTime>& time);

}  // namespace ondura
