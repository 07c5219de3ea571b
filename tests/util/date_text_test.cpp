#include "util/date_text.h"

#include <gtest/gtest.h>

#include <optional>
#include <string_view>

namespace ondura {
namespace {

const LocalTime kMorning = ToLocalTime({2026, 3, 4, 7, 5, 9});
const LocalTime kAfternoon = ToLocalTime({2026, 11, 14, 16, 39, 8});

TEST(FormatDate, ReadsAnMAsMinuteFromTheHourOn) {
  struct Row {
    std::string_view picture;
    std::string_view morning;
    std::string_view afternoon;
  };
  const Row rows[] = {
      {kStampPicture, "03-04-2026 07:05:09", "11-14-2026 16:39:08"},
      {kShortHourPicture, "03-04-2026 7:05:09", "11-14-2026 16:39:08"},
      {kErrorPicture, "03-04-2026 7:05:09:59", "11-14-2026 16:39:08:398"},
      {"m/d/yy", "3/4/26", "11/14/26"},
      {"yyyymmddhhmm", "202603040705", "202611141639"},
      {"MM-DD-YYYY HH:MM:SS", "03-04-2026 07:05:09", "11-14-2026 16:39:08"},
      {"h.m, m", "7.5, 5", "16.39, 39"},
      {"", "", ""},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(FormatDate(row.picture, kMorning), row.morning) << row.picture;
    EXPECT_EQ(FormatDate(row.picture, kAfternoon), row.afternoon) << row.picture;
  }
}

TEST(ParseFixedDate, TakesTheFixedFormAndNothingElse) {
  const std::pair<std::string_view, std::optional<LocalTime>> rows[] = {
      {"11-14-2026 16:39:08", kAfternoon},
      {" 3-4-2026  7:5:9 ", kMorning},
      {"11-14-2026", ToLocalTime({2026, 11, 14})},
      {"02-29-2028 23:59:59", ToLocalTime({2028, 2, 29, 23, 59, 59})},
      {"02-29-2026", std::nullopt},
      {"13-01-2026", std::nullopt},
      {"00-10-2026", std::nullopt},
      {"257-14-2026", std::nullopt},
      {"1-257-2026", std::nullopt},
      {"11-14-26", std::nullopt},
      {"11/14/2026", std::nullopt},
      {"11-14-2026 24:00:00", std::nullopt},
      {"11-14-2026 16:60:00", std::nullopt},
      {"11-14-2026 16:39", std::nullopt},
      {"11-14-2026 -0:39:08", std::nullopt},
      {"11-14-2026 16:39:08 PM", std::nullopt},
      {"11-14-202616:39:08", std::nullopt},
      {"-11-14-2026", std::nullopt},
      {"99999999999-14-2026", std::nullopt},
      {"11-14-", std::nullopt},
      {"", std::nullopt},
      {std::string_view{"\0\xFF", 2}, std::nullopt},
  };
  for (const auto& [text, time] : rows) EXPECT_EQ(ParseFixedDate(text), time) << text;
}

}  // namespace
}  // namespace ondura
