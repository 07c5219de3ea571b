#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "platform/local_time.h"

namespace ondura {

inline constexpr std::array<std::string_view, 12> kMonthNames{
    "January", "February", "March",     "April",   "May",      "June",
    "July",    "August",   "September", "October", "November", "December"};

// A locale's pictures: "d", "dd", "ddd" and "dddd" (names of the day), "M" to "MMMM", "y" to "yyyy"; "h",
// "H", "m", "s" with one or two letters, "t" and "tt" for the half of the day. Text between single quotes
// and every other character stand for themselves. Names are English. Letter case counts for the hour only:
// the kind of the picture distinguishes the month from the minute.
enum class PictureKind { kDate, kTime };

struct LocalePicture {
  std::string_view text;
  PictureKind kind = PictureKind::kDate;
};

// The time in the form of the picture.
std::string WriteByPicture(const LocalePicture& picture, const TimeFields& fields);

// Reads what the picture describes from the front of `text` into the fields that it names, and steps over
// it. Numbers may have fewer digits than the picture. False when the text has another form; both arguments
// are then of no use.
bool TakeByPicture(const LocalePicture& picture, std::string_view& text, TimeFields& fields);

}  // namespace ondura
