#include "reporting/time_diff.h"

#include <gtest/gtest.h>

#include "util/date_text.h"

namespace ondura {
namespace {

struct TimeDiffCase {
  const char* story;
  const char* start;
  const char* end;
  const char* want;
};

class TimeDiffTest : public testing::TestWithParam<TimeDiffCase> {};

TEST_P(TimeDiffTest, TellsTheDurationInWords) {
  const TimeDiffCase& row = GetParam();
  const auto time = [](const char* text) {
    return ParseFixedDate(std::string{"11-14-2026 "} + text).value();
  };
  EXPECT_EQ(TimeDiffString(time(row.start), time(row.end)), row.want) << row.story;
}

INSTANTIATE_TEST_SUITE_P(
    Reporting, TimeDiffTest,
    testing::Values(TimeDiffCase{"all three parts", "10:00:00", "11:02:03",
                                 " 1 hour, 2 minutes and 3 seconds"},
                    TimeDiffCase{"over an hour's boundary", "10:59:50", "11:00:10", " 20 seconds"},
                    TimeDiffCase{"equal times say nothing", "10:00:00", "10:00:00", ""},
                    TimeDiffCase{"hours and seconds", "08:00:00", "10:00:01", " 2 hours and 1 second"},
                    TimeDiffCase{"hours and minutes", "08:00:00", "09:01:00", " 1 hour and 1 minute"},
                    TimeDiffCase{"minutes and seconds", "08:00:30", "08:02:00", " 1 minute and 30 seconds"},
                    TimeDiffCase{"an end before its start", "08:00:30", "08:00:00", ""}));

}  // namespace
}  // namespace ondura
