#pragma once

#include <chrono>

namespace ondura {

// Wall-clock time of the machine's own zone, to the second. It jumps where the clock does.
using LocalTime = std::chrono::local_seconds;

// The calendar fields of a LocalTime. Months and days count from 1, hours from 0.
struct TimeFields {
  int year = 1970;
  int month = 1;
  int day = 1;
  int hour = 0;
  int minute = 0;
  int second = 0;

  friend bool operator==(const TimeFields&, const TimeFields&) = default;
};

inline LocalTime ToLocalTime(const TimeFields& fields) {
  using namespace std::chrono;
  const year_month_day date{year{fields.year}, month{static_cast<unsigned>(fields.month)},
                            day{static_cast<unsigned>(fields.day)}};
  return local_days{date} + hours{fields.hour} + minutes{fields.minute} + seconds{fields.second};
}

inline TimeFields ToFields(LocalTime time) {
  using namespace std::chrono;
  const auto days = floor<std::chrono::days>(time);
  const year_month_day date{days};
  const hh_mm_ss clock{time - days};
  return {static_cast<int>(date.year()),
          static_cast<int>(static_cast<unsigned>(date.month())),
          static_cast<int>(static_cast<unsigned>(date.day())),
          static_cast<int>(clock.hours().count()),
          static_cast<int>(clock.minutes().count()),
          static_cast<int>(clock.seconds().count())};
}

}  // namespace ondura
