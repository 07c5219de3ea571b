#include "com/com_date.h"

#include <chrono>
#include <cmath>

namespace ondura {

namespace {

using namespace std::chrono;

constexpr local_days kDayZero{year{1899} / 12 / 30};
constexpr double kSecondsPerDay = 86400;
constexpr DATE kFirst = -657434;  // 1 January 100
constexpr DATE kBehindLast = 2958466;

}  // namespace

std::optional<LocalTime> TimeOf(DATE date) {
  if (!(date >= kFirst) || !(date < kBehindLast) || date == 0) return std::nullopt;
  const double day = std::trunc(date);
  const auto second = static_cast<std::int64_t>(std::round(std::abs(date - day) * kSecondsPerDay));
  return LocalTime{kDayZero + days{static_cast<std::int64_t>(day)}} + seconds{second};
}

DATE DateOf(const std::optional<LocalTime>& time) {
  if (!time) return 0;
  const auto day = floor<days>(*time);
  const auto days_since = static_cast<double>((day - kDayZero).count());
  const double fraction = static_cast<double>((*time - day).count()) / kSecondsPerDay;
  return days_since < 0 ? days_since - fraction : days_since + fraction;
}

}  // namespace ondura
