#include "reporting/time_diff.h"

#include <chrono>
#include <cstdint>
#include <string_view>

namespace ondura {

namespace {

// The boundaries of `Unit` that lie between the two times.
template <class Unit>
std::int64_t BoundariesBetween(LocalTime start, LocalTime end) {
  return std::int64_t{(std::chrono::floor<Unit>(end) - std::chrono::floor<Unit>(start)).count()};
}

std::string PartText(std::int64_t number, std::string_view unit) {
  if (number <= 0) return {};
  return (" " + std::to_string(number) + " ").append(unit).append(number == 1 ? "" : "s");
}

}  // namespace

std::string TimeDiffString(LocalTime dtmStart, LocalTime dtmEnd) {
  const TimeFields start = ToFields(dtmStart);
  const TimeFields end = ToFields(dtmEnd);
  const std::int64_t hours =
      BoundariesBetween<std::chrono::hours>(dtmStart, dtmEnd) - (end.minute < start.minute ? 1 : 0);
  const std::int64_t minutes =
      BoundariesBetween<std::chrono::minutes>(dtmStart, dtmEnd) % 60 - (end.second < start.second ? 1 : 0);
  const std::int64_t seconds = BoundariesBetween<std::chrono::seconds>(dtmStart, dtmEnd) % 60;
  std::string hours_text = PartText(hours, "hour");
  std::string minutes_text = PartText(minutes, "minute");
  const std::string seconds_text = PartText(seconds, "second");
  if (!minutes_text.empty() && !seconds_text.empty()) {
    minutes_text += " and";
    if (!hours_text.empty()) hours_text += ",";
  } else if (!hours_text.empty() && (!minutes_text.empty() || !seconds_text.empty())) {
    hours_text += " and";
  }
  return hours_text + minutes_text + seconds_text;
}

}  // namespace ondura
