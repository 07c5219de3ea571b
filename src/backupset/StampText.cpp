#include "backupset/StampText.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "text/separators.h"
#include "util/date_text.h"

namespace ondura {

namespace {

constexpr std::string_view kListPicture = "mm-dd-yyyy HH:MM:SS";
constexpr std::size_t kDateSeparatorAt = 2;
constexpr std::size_t kTimeAt = 11;
constexpr std::size_t kTimeSeparatorAt = 2;

constexpr std::chrono::hours kShift{1};
constexpr LocalTime kFirstStamp =
    std::chrono::local_days{std::chrono::year{100} / std::chrono::January / 1} + kShift;
constexpr LocalTime kBehindLastStamp =
    std::chrono::local_days{std::chrono::year{10000} / std::chrono::January / 1} - kShift;

char16_t* WriteTwoDigits(int number, char16_t* into) {
  *into++ = static_cast<char16_t>(u'0' + number / 10);
  *into++ = static_cast<char16_t>(u'0' + number % 10);
  return into;
}

}  // namespace

StampText::StampText() { SetMode(0); }

void StampText::SetMode(std::int16_t mode) {
  const std::string sample = FormatDate(kListPicture, LocalTime{});
  std::string date = sample.substr(0, kTimeAt - 1);
  std::string time = sample.substr(kTimeAt);
  if (mode == 0 || mode == 1) date = NormalizeDateSeparator(date);
  if (mode == 0 || mode == 2) time = NormalizeTimeSeparator(time);
  date_separator_ = static_cast<char16_t>(date[kDateSeparatorAt]);
  time_separator_ = static_cast<char16_t>(time[kTimeSeparatorAt]);
  days_.fill({});
  Format(0, days_[0]);
}

bool StampText::IsStampable(LocalTime time) { return time >= kFirstStamp && time < kBehindLastStamp; }

char16_t* StampText::Write(LocalTime time, char16_t* into) {
  const auto day = std::chrono::floor<std::chrono::days>(time);
  const auto second = static_cast<int>((time - day).count());
  const Day& date = DayOf(static_cast<std::int32_t>(day.time_since_epoch().count()));
  into = std::copy(date.text.begin(), date.text.end(), into);
  *into++ = u' ';
  into = WriteTwoDigits(second / 3600, into);
  *into++ = time_separator_;
  into = WriteTwoDigits(second / 60 % 60, into);
  *into++ = time_separator_;
  return WriteTwoDigits(second % 60, into);
}

const StampText::Day& StampText::DayOf(std::int32_t number) {
  Day& day = days_[static_cast<std::uint32_t>(number) % kDaysKept];
  if (day.number != number) Format(number, day);
  return day;
}

void StampText::Format(std::int32_t number, Day& day) const {
  const TimeFields fields = ToFields(LocalTime{std::chrono::days{number}});
  day.number = number;
  char16_t* into = WriteTwoDigits(fields.month, day.text.data());
  *into++ = date_separator_;
  into = WriteTwoDigits(fields.day, into);
  *into++ = date_separator_;
  into = WriteTwoDigits(fields.year / 100, into);
  WriteTwoDigits(fields.year % 100, into);
}

std::int16_t PresentDateMode(LocaleInfo& locale, LocalTime now) {
  const std::string present =
      FormatDate(locale.Text(kLocaleShortDate), now) + " " + FormatDate(locale.Text(kLocaleTimeFormat), now);
  return DetectDateTimeSeparators(present);
}

}  // namespace ondura
