#include "schedule/occurrences.h"

#include "schedule_house.h"

namespace ondura {
namespace {

// The days of 2028, a leap year that begins on a Saturday, that are on in `mask` (Sunday first), counted
// off without any calendar of the library.
std::vector<LocalTime> DaysOf2028(std::string_view mask) {
  std::vector<LocalTime> listed;
  std::size_t weekday = 6;
  int month = 0;
  for (const int length : {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31}) {
    ++month;
    for (int day = 1; day <= length; ++day, weekday = (weekday + 1) % 7) {
      if (mask[weekday] == '1') listed.push_back(Time(2028, month, day, 22, 15, 30));
    }
  }
  return listed;
}

using YearCase = std::tuple<Step, const char*>;

TEST(Stepping, MeetsExactlyTheDaysOfALeapYear) {
  for (const auto& [step, mask] :
       {YearCase{Step::kListedDay, "1111111"}, YearCase{Step::kListedDay, "0101010"},
        YearCase{Step::kListedDay, "1000000"}, YearCase{Step::kListedDay, "0000001"},
        YearCase{Step::kWorkingDay, "0111110"}, YearCase{Step::kWeekendDay, "1000001"},
        YearCase{Step::kWeek, "0001000"}}) {
    const auto want = DaysOf2028(mask);
    std::vector<LocalTime> met{want.front()};
    while (met.size() < want.size()) {
      met.push_back(Stepped(met.back(), step, DayFlagsOf(mask)).value_or(LocalTime{}));
    }
    EXPECT_EQ(met, want) << mask;
    EXPECT_EQ(ToFields(Stepped(met.back(), step, DayFlagsOf(mask)).value()).year, 2029);
  }
}

using MonthCase = std::tuple<LocalTime, std::vector<int>>;

TEST(Stepping, AMonthKeepsTheDayUntilAShorterOneTakesIt) {
  for (const auto& [january, want] :
       {MonthCase{Time(2026, 1, 31, 23, 59), {28, 28, 28, 28, 28, 28, 28, 28, 28, 28, 28, 28, 28}},
        MonthCase{Time(2028, 1, 30, 23, 59), {29, 29, 29, 29, 29, 29, 29, 29, 29, 29, 29, 29, 28}},
        MonthCase{Time(2027, 1, 15, 23, 59), {15, 15, 15, 15, 15, 15, 15, 15, 15, 15, 15, 15, 15}}}) {
    LocalTime time = january;
    for (std::size_t i = 0; i < want.size(); ++i) {
      time = Stepped(time, Step::kMonth, {}).value();
      const int passed = static_cast<int>(i) + 1;
      EXPECT_EQ(time, Time(ToFields(january).year + passed / 12, passed % 12 + 1, want[i], 23, 59));
    }
  }
}

TEST(Stepping, EndsWhereThereIsNoDayToGoTo) {
  EXPECT_EQ(Stepped(Time(2026, 12, 31, 23, 30), Step::kHour, {}), Time(2027, 1, 1, 0, 30));
  EXPECT_EQ(Stepped(Time(9999, 12, 31), Step::kListedDay, DayFlagsOf("1111111")), std::nullopt);
  EXPECT_EQ(Stepped(Time(2026, 1, 1), Step::kListedDay, DayFlagsOf("0")), std::nullopt);
}

TEST(DayMask, IsTakenFromTheRight) {
  using Row = std::pair<const char*, const char*>;
  for (const auto& [mask, want] :
       {Row{"0100000", "0100000"}, Row{"100000", "0100000"}, Row{"1111111", "1111111"}, Row{"1", "0000001"},
        Row{" 1000001 ", "1000001"}, Row{"", "0000000"}, Row{"daily", "0000000"},
        Row{"99999999999", "0000000"}, Row{"2147483647.6", "0000000"}}) {
    std::string flags;
    for (const std::string& flag : DayFlagsOf(mask)) flags += flag;
    EXPECT_EQ(flags, want) << mask;
  }
}

}  // namespace
}  // namespace ondura
