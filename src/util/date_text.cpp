#include "util/date_text.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>

#include "text/text.h"

namespace ondura {

namespace {

char Letter(char character) { return static_cast<char>(std::tolower(static_cast<unsigned char>(character))); }

int FieldOf(char letter, bool after_hour, const TimeFields& fields) {
  switch (letter) {
    case 'd':
      return fields.day;
    case 'm':
      return after_hour ? fields.minute : fields.month;
    case 'y':
      return fields.year;
    case 'h':
      return fields.hour;
    default:
      return fields.second;
  }
}

bool IsPictureLetter(char letter) { return std::string_view{"dmyhs"}.find(letter) != std::string_view::npos; }

// Reads a number of one to `most_digits` digits and steps over it.
std::optional<int> TakeNumber(std::string_view& text, std::size_t most_digits) {
  if (text.empty() || text.front() < '0' || text.front() > '9') return std::nullopt;
  int number = 0;
  const char* last = text.data() + std::min(text.size(), most_digits);
  const auto [end, error] = std::from_chars(text.data(), last, number);
  if (error != std::errc{}) return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return number;
}

bool TakeSeparator(std::string_view& text, char separator) {
  if (!text.starts_with(separator)) return false;
  text.remove_prefix(1);
  return true;
}

// Fills numbers separated by `separator`; false unless every one is there.
template <std::size_t kCount>
bool TakeNumbers(std::string_view& text, char separator, const std::array<int*, kCount>& into) {
  for (std::size_t i = 0; i < kCount; ++i) {
    if (i > 0 && !TakeSeparator(text, separator)) return false;
    const auto number = TakeNumber(text, 4);
    if (!number) return false;
    *into[i] = *number;
  }
  return true;
}

}  // namespace

bool IsCalendarTime(const TimeFields& fields) {
  using namespace std::chrono;
  // The calendar types hold a month and a day in one byte, so larger numbers would come round to valid ones.
  if (fields.year < 100 || fields.year > 9999 || fields.month > 12 || fields.day > 31) return false;
  const year_month_day date{year{fields.year}, month{static_cast<unsigned>(fields.month)},
                            day{static_cast<unsigned>(fields.day)}};
  return date.ok() && fields.hour < 24 && fields.minute < 60 && fields.second < 60;
}

std::string FormatDate(std::string_view picture, LocalTime time) {
  const TimeFields fields = ToFields(time);
  std::string result;
  bool after_hour = false;
  for (std::size_t at = 0; at < picture.size();) {
    const char letter = Letter(picture[at]);
    if (!IsPictureLetter(letter)) {
      result += picture[at++];
      continue;
    }
    std::size_t count = 0;
    while (at < picture.size() && Letter(picture[at]) == letter) ++at, ++count;
    if (letter == 'h') after_hour = true;
    int number = FieldOf(letter, after_hour, fields);
    if (letter == 'y' && count <= 2) number %= 100;
    result += Padded(number, letter == 'y' ? (count <= 2 ? 2 : 4) : (count >= 2 ? 2 : 1));
  }
  return result;
}

std::optional<LocalTime> ParseFixedDate(std::string_view text) {
  text = Trim(text);
  TimeFields fields;
  if (!TakeNumbers<3>(text, '-', {&fields.month, &fields.day, &fields.year}) || !IsCalendarTime(fields)) {
    return std::nullopt;
  }
  if (!text.empty() && !text.starts_with(' ')) return std::nullopt;
  text = Trim(text);
  if (!text.empty() && !TakeNumbers<3>(text, ':', {&fields.hour, &fields.minute, &fields.second})) {
    return std::nullopt;
  }
  if (!text.empty() || !IsCalendarTime(fields)) return std::nullopt;
  return ToLocalTime(fields);
}

}  // namespace ondura
