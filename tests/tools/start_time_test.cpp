#include "start_time.h"

#include <gtest/gtest.h>

#include "util/date_text.h"

namespace ondura {
namespace {

// 2090-11-14 is a Tuesday.
TEST(StartTime, MeansTheNextSuchTimeFromTheClockOfTheMachine) {
  const LocalTime now = ToLocalTime({2090, 11, 14, 12, 30, 20});
  for (const auto& [words, want] : {std::pair{"now", "2090-11-14 12:30:00"},
                                    {"12:31", "2090-11-14 12:31:00"},
                                    {"12:30", "2090-11-14 12:30:00"},
                                    {"12:29", "2090-11-15 12:29:00"},
                                    {"9:05", "2090-11-15 09:05:00"},
                                    {"tomorrow 23:59", "2090-11-15 23:59:00"},
                                    {"tue 12:30", "2090-11-14 12:30:00"},
                                    {"tue 12:29", "2090-11-21 12:29:00"},
                                    {"Wednesday 00:00", "2090-11-15 00:00:00"},
                                    {"Friday 00:00", "2090-11-17 00:00:00"},
                                    {"mon 12:30", "2090-11-20 12:30:00"},
                                    {"2092-02-29 01:02", "2092-02-29 01:02:00"}}) {
    EXPECT_EQ(FormatDate("yyyy-mm-dd HH:mm:ss", ParseStartTime(words, now).value_or(LocalTime{})), want)
        << words;
  }
  for (const char* words : {"", "12", "24:00", "12:60", "123:00", ":30", "12:3", "+1:30", "mon", "mo 12:30",
                            "mon  12:30", " 12:30", "2090-02-29 10:00", "2090-11-14", "1969-12-31 10:00"}) {
    EXPECT_EQ(ParseStartTime(words, now), std::nullopt) << words;
  }
}

}  // namespace
}  // namespace ondura
