#include "util/date_text.h"

#include <gtest/gtest.h>

#include <string_view>

namespace ondura {
namespace {

const LocalTime kMorning = ToLocalTime({2026, 3, 4, 7, 5, 9});
const LocalTime kAfternoon = ToLocalTime({2026, 11, 14, 16, 39, 8});

TEST(FormatDate, ReadsAnMAsMinuteFromTheHourOn) {
  using Row = std::tuple<std::string_view, std::string_view, std::string_view>;
  const Row rows[] = {{kStampPicture, "03-04-2026 07:05:09", "11-14-2026 16:39:08"},
                      {kShortHourPicture, "03-04-2026 7:05:09", "11-14-2026 16:39:08"},
                      {kErrorPicture, "03-04-2026 7:05:09:59", "11-14-2026 16:39:08:398"},
                      {"M/d/YY h.m, m", "3/4/26 7.5, 5", "11/14/26 16.39, 39"},
                      {"yyyymmddhhmm", "202603040705", "202611141639"}};
  for (const auto& [picture, morning, afternoon] : rows) {
    EXPECT_EQ(FormatDate(picture, kMorning), morning) << picture;
    EXPECT_EQ(FormatDate(picture, kAfternoon), afternoon) << picture;
  }
}

TEST(ParseFixedDate, TakesTheFixedFormAndNothingElse) {
  const std::pair<std::string_view, LocalTime> dates[] = {
      {"11-14-2026 16:39:08", kAfternoon},
      {" 3-4-2026  7:5:9 ", kMorning},
      {"02-29-2028", ToLocalTime({2028, 2, 29})},
      {"12-31-9999 23:59:59", ToLocalTime({9999, 12, 31, 23, 59, 59})}};
  for (const auto& [text, time] : dates) EXPECT_EQ(ParseFixedDate(text), time) << text;
  for (const std::string_view none :
       {"02-29-2026", "13-01-2026", "00-10-2026", "257-14-2026", "1-257-2026", "11-14-26", "11/14/2026",
        "-11-14-2026", "11-14-2026 24:00:00", "11-14-2026 16:60:00", "11-14-2026 16:39",
        "11-14-2026 -0:39:08", "11-14-202616:39:08", "11-14-2026 16:39:08 PM", "99999999999-14-2026",
        "11-14-", "", "\xFF\x01"}) {
    EXPECT_EQ(ParseFixedDate(none), std::nullopt) << none;
  }
}

}  // namespace
}  // namespace ondura
