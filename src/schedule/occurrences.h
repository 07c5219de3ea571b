#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "platform/local_time.h"
#include "schedule/record_dates.h"
#include "schedule/schedule_record.h"

namespace ondura {

// The digits of a day mask as texts, Sunday at 0; "1" is on.
using DayFlagTexts = std::array<std::string, 8>;

enum class Step { kHour, kListedDay, kWorkingDay, kWeekendDay, kWeek, kMonth };

// What a catch-up goes on with: a weekend schedule that is late continues on working days.
constexpr Step CatchUpStep(Step first) { return first == Step::kWeekendDay ? Step::kWorkingDay : first; }

// Where a record comes to stand.
struct Occurrence {
  std::string nexttime;
  std::string sortkey;
  int catch_up_steps = 0;  // how many steps it took after the first
};

// One step on from `from`. std::nullopt when no day is on, or after the year 9999.
std::optional<LocalTime> Stepped(LocalTime from, Step step, const DayFlagTexts& days);

// The record's next occurrence: its `nexttime` moved by one step, and on while its key lies before that of
// `now`. std::nullopt when the record can't be moved.
std::optional<Occurrence> NextOccurrence(const ScheduleRecord& record, Step step, const DayFlagTexts& days,
                                         LocalTime now, const LocaleFacts& locale);

// The digits of `mask`, read as a 32-bit number, from the right; 0 for a text that is not a number.
DayFlagTexts DayFlagsOf(std::string_view mask);

}  // namespace ondura
