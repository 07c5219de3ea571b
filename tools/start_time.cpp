#include "start_time.h"

#include <algorithm>
#include <array>
#include <string>

#include "text/text.h"

namespace ondura {

namespace {

using std::chrono::days;
using std::chrono::floor;
using std::chrono::minutes;

constexpr std::array<std::string_view, 7> kDays = {"sunday",   "monday", "tuesday", "wednesday",
                                                   "thursday", "friday", "saturday"};

// The number of `text`, which must be `length` digits.
std::optional<int> Digits(std::string_view text, std::size_t length) {
  const bool digits = std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
  const auto number = ParseInteger(text);
  if (!digits || text.size() != length || !number) return std::nullopt;
  return static_cast<int>(*number);
}

// "12:30" or "9:30", counted from midnight.
std::optional<minutes> ParseTimeOfDay(std::string_view text) {
  const auto colon = std::min(text.find(':'), text.size());
  const auto hour = Digits(text.substr(0, colon), colon == 1 ? 1 : 2);
  const auto minute = Digits(text.substr(std::min(colon + 1, text.size())), 2);
  if (!hour || !minute || *hour > 23 || *minute > 59) return std::nullopt;
  return minutes{60 * *hour + *minute};
}

std::optional<std::chrono::local_days> ParseDate(std::string_view text) {
  if (text.size() != 10 || text[4] != '-' || text[7] != '-') return std::nullopt;
  const auto year = Digits(text.substr(0, 4), 4);
  const auto month = Digits(text.substr(5, 2), 2);
  const auto day = Digits(text.substr(8), 2);
  if (!year || !month || !day || *year < 1970 || *year >= 3000) return std::nullopt;
  const std::chrono::year_month_day date{std::chrono::year{*year},
                                         std::chrono::month{static_cast<unsigned>(*month)},
                                         std::chrono::day{static_cast<unsigned>(*day)}};
  if (!date.ok()) return std::nullopt;
  return std::chrono::local_days{date};
}

// The day's whole English name or its first three letters.
std::optional<std::chrono::weekday> ParseWeekday(std::string_view text) {
  const auto found = std::ranges::find_if(
      kDays, [&](std::string_view day) { return text == day || text == day.substr(0, 3); });
  if (found == kDays.end()) return std::nullopt;
  return std::chrono::weekday{static_cast<unsigned>(found - kDays.begin())};
}

}  // namespace

std::optional<LocalTime> ParseStartTime(std::string_view text, LocalTime now) {
  const LocalTime this_minute = floor<minutes>(now);
  const auto today = floor<days>(now);
  const std::string words = ToLower(text);
  if (words == "now") return this_minute;
  const auto blank = words.rfind(' ');
  const std::string day = blank == std::string::npos ? "" : words.substr(0, blank);
  const auto time =
      ParseTimeOfDay(std::string_view{words}.substr(blank == std::string::npos ? 0 : blank + 1));
  if (!time) return std::nullopt;
  if (blank == std::string::npos) {
    return today + *time < this_minute ? today + days{1} + *time : today + *time;
  }
  if (day == "tomorrow") return today + days{1} + *time;
  if (const auto weekday = ParseWeekday(day)) {
    const LocalTime next = today + (*weekday - std::chrono::weekday{today}) + *time;
    return next < this_minute ? next + days{7} : next;
  }
  const auto date = ParseDate(day);
  if (!date) return std::nullopt;
  return *date + *time;
}

}  // namespace ondura
