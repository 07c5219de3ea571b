#include "schedule/occurrences.h"

#include <cmath>

#include "text/text.h"
#include "util/date_text.h"

namespace ondura {

namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::local_days;
using std::chrono::weekday;

// By the day of the week, Sunday first.
constexpr std::array<int, 7> kDaysToWorkingDay{1, 1, 1, 1, 1, 3, 2};
constexpr std::array<int, 7> kDaysToWeekendDay{6, 5, 4, 3, 2, 1, 1};

std::size_t WeekdayOf(LocalTime time) { return weekday{floor<days>(time)}.c_encoding(); }

std::optional<LocalTime> ToListedDay(LocalTime from, const DayFlagTexts& flags) {
  for (int i = 1; i <= 7; ++i) {
    const LocalTime next = from + days{i};
    if (flags[WeekdayOf(next)] == "1") return next;
  }
  return std::nullopt;
}

LocalTime ToNextMonth(LocalTime from) {
  using namespace std::chrono;
  const auto day_of = floor<days>(from);
  const year_month_day moved = year_month_day{day_of} + months{1};
  const year_month_day date = moved.ok() ? moved : moved.year() / moved.month() / last;
  return local_days{date} + (from - day_of);
}

std::optional<LocalTime> Unbounded(LocalTime from, Step step, const DayFlagTexts& flags) {
  switch (step) {
    case Step::kHour:
      return from + hours{1};
    case Step::kListedDay:
      return ToListedDay(from, flags);
    case Step::kWorkingDay:
      return from + days{kDaysToWorkingDay[WeekdayOf(from)]};
    case Step::kWeekendDay:
      return from + days{kDaysToWeekendDay[WeekdayOf(from)]};
    case Step::kWeek:
      return from + days{7};
    case Step::kMonth:
      return ToNextMonth(from);
  }
  return std::nullopt;
}

}  // namespace

std::optional<LocalTime> Stepped(LocalTime from, Step step, const DayFlagTexts& days) {
  constexpr LocalTime kBehindLastYear = local_days{std::chrono::year{10'000} / 1 / 1};
  const auto next = Unbounded(from, step, days);
  return next && *next < kBehindLastYear ? next : std::nullopt;
}

std::optional<Occurrence> NextOccurrence(const ScheduleRecord& record, Step step, const DayFlagTexts& days,
                                         LocalTime now, const LocaleFacts& locale) {
  const auto from = ReadRecordDate(record.nexttime, record.sortkey, locale);
  if (!from) return std::nullopt;
  // Keys have no seconds: an occurrence anywhere in the present minute is one to come.
  const LocalTime present_minute = floor<std::chrono::minutes>(now);
  Occurrence result;
  auto time = Stepped(*from, step, days);
  for (; time && *time < present_minute; ++result.catch_up_steps) {
    time = Stepped(*time, CatchUpStep(step), days);
  }
  if (!time) return std::nullopt;
  result.nexttime =
      IsDayFirst(locale) ? DefaultDateText(*time, locale) : FormatDate(kShortHourPicture, *time);
  result.sortkey = SortKeyOf(*time);
  return result;
}

DayFlagTexts DayFlagsOf(std::string_view mask) {
  DayFlagTexts flags;
  const double number = std::nearbyint(ParseNumber(mask).value_or(0));
  constexpr double kBeyond32Bits = 2147483648.0;
  int value = std::fabs(number) < kBeyond32Bits ? static_cast<int>(number) : 0;
  for (std::size_t i = 7; i-- > 0;) {
    flags[i] = std::to_string(value % 10);
    value = static_cast<int>(std::nearbyint(value / 10.0));
  }
  return flags;
}

}  // namespace ondura
