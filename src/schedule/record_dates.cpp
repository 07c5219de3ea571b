#include "schedule/record_dates.h"

#include <vector>

#include "text/text.h"
#include "util/date_text.h"

namespace ondura {

namespace {

bool IsDigit(char character) { return character >= '0' && character <= '9'; }

bool IsLetter(char character) {
  return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z');
}

// The last run of characters that are neither digits nor letters nor blanks.
std::string_view TimeSeparatorOf(std::string_view date) {
  const auto is_separator = [](char character) {
    return !IsDigit(character) && !IsLetter(character) && character != ' ';
  };
  std::size_t end = date.size();
  while (end > 0 && !is_separator(date[end - 1])) --end;
  std::size_t begin = end;
  while (begin > 0 && is_separator(date[begin - 1])) --begin;
  return date.substr(begin, end - begin);
}

std::string_view Cut(std::string_view text, std::size_t position, std::size_t length) {
  return position < text.size() ? text.substr(position, length) : std::string_view{};
}

std::string_view LastTwo(std::string_view text) { return text.substr(text.size() < 2 ? 0 : text.size() - 2); }

std::string TwoDigits(std::string_view text) {
  text = Trim(text);
  return std::string(text.size() == 1 ? 1 : 0, '0').append(text);
}

std::string_view PartAt(const std::vector<std::string>& parts, std::size_t index) {
  return index < parts.size() ? std::string_view{parts[index]} : std::string_view{};
}

}  // namespace

std::string SortKeyOfText(std::string_view date) {
  const auto parts = Split(date, TimeSeparatorOf(date));
  // Five parts: the date is separated by the same character as the time of day.
  const std::size_t hour_at = PartAt(parts, 4).empty() ? 0 : 2;
  std::string key{Cut(date, 6, 4)};
  key.append(Cut(date, 0, 2)).append(Cut(date, 3, 2));
  return key + TwoDigits(LastTwo(PartAt(parts, hour_at))) + TwoDigits(PartAt(parts, hour_at + 1));
}

std::string SortKeyOf(LocalTime time) { return SortKeyOfText(FormatDate(kStampPicture, time)); }

std::optional<LocalTime> ReadRecordDate(std::string_view text, std::string_view sortkey,
                                        const LocaleFacts& locale) {
  const auto fixed = ReadFixedForm(text, locale);
  const auto own = ReadOwnForm(text, locale);
  if (!fixed) return own;
  const bool is_own_meant = own && own != fixed && SortKeyOf(*own) == sortkey && SortKeyOf(*fixed) != sortkey;
  return is_own_meant ? own : fixed;
}

}  // namespace ondura
