#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/Clock.h"

namespace ondura {

// Times for people's other programs, in the form of RFC 3339: "2026-11-24T22:05:00+01:00".

// `time` with the offset that the machine's zone has then.
std::string IsoTime(Clock& clock, LocalTime time);

// The local part of such a text, whatever its offset: the wall clock where it was written. The offset, the
// seconds and the time of day may be missing. std::nullopt for a text of another form.
std::optional<LocalTime> ParseIsoTime(std::string_view text);

}  // namespace ondura
