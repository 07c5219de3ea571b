#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/local_time.h"

namespace ondura {

// Pictures that the system's files and traces use. Letter case does not count; "m" is the month until an
// hour has been met and the minute from there on.
inline constexpr std::string_view kStampPicture = "mm-dd-yyyy HH:mm:ss";
inline constexpr std::string_view kShortHourPicture = "mm-dd-yyyy H:mm:ss";
// The tail prints minute and second once more, without leading zeros; there are no milliseconds in it.
inline constexpr std::string_view kErrorPicture = "mm-dd-yyyy H:mm:ss:ms";

// The time in the form of the picture: d, dd, m, mm, yy, yyyy, h, hh, s, ss; other characters stand for
// themselves.
std::string FormatDate(std::string_view picture, LocalTime time);

// True for fields that are a date of the years 100 to 9999 and a time of day.
bool IsCalendarTime(const TimeFields& fields);

// The time of a text in the fixed form "mm-dd-yyyy H:mm:ss" (also with one-digit fields, or without the
// time of day). std::nullopt for a text in another form.
std::optional<LocalTime> ParseFixedDate(std::string_view text);

}  // namespace ondura
