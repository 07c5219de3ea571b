#include "schedule/record_dates.h"

#include <algorithm>
#include <array>

#include "schedule/locale_picture.h"
#include "util/date_text.h"
#include "util/text.h"

namespace ondura {

namespace {

constexpr std::string_view kFixedDatePicture = "MM-dd-yyyy";
constexpr std::array<std::string_view, 3> kCommonTimePictures{"H:mm:ss", "H:mm", "h:mm:ss tt"};

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

// The text may lack the time of day, and may have it in a common form in place of the machine's own.
bool ReadTimeOfDay(std::string_view text, const LocaleFacts& locale, TimeFields& fields) {
  const auto reads = [&](std::string_view picture) {
    std::string_view rest = text;
    TimeFields read = fields;
    const bool fits = !picture.empty() && TakeByPicture({picture, PictureKind::kTime}, rest, read) &&
                      rest.empty() && IsCalendarTime(read);
    if (fits) fields = read;
    return fits;
  };
  return text.empty() || std::ranges::any_of(kCommonTimePictures, reads) || reads(locale.time_format);
}

std::optional<LocalTime> ReadBy(std::string_view date_picture, std::string_view text,
                                const LocaleFacts& locale) {
  TimeFields fields;
  text = Trim(text);
  if (date_picture.empty() || !TakeByPicture({date_picture, PictureKind::kDate}, text, fields) ||
      !IsCalendarTime(fields)) {
    return std::nullopt;
  }
  if (!ReadTimeOfDay(Trim(text), locale, fields)) return std::nullopt;
  return ToLocalTime(fields);
}

bool IsAscii(std::string_view text) {
  return std::ranges::all_of(text,
                             [](char character) { return static_cast<unsigned char>(character) < 0x80; });
}

}  // namespace

bool IsDayFirst(const LocaleFacts& locale) {
  return locale.date_format.starts_with('d') || locale.date_format.starts_with('D');
}

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
  const auto fixed = ReadBy(kFixedDatePicture, text, locale);
  const auto own = ReadBy(locale.date_format, text, locale);
  if (!fixed) return own;
  const bool is_own_meant = own && own != fixed && SortKeyOf(*own) == sortkey && SortKeyOf(*fixed) != sortkey;
  return is_own_meant ? own : fixed;
}

std::string DefaultDateText(LocalTime time, const LocaleFacts& locale) {
  const TimeFields fields = ToFields(time);
  std::string own = WriteByPicture({locale.date_format, PictureKind::kDate}, fields) + " " +
                    WriteByPicture({locale.time_format, PictureKind::kTime}, fields);
  // Files are in the code page, which may lack other characters.
  if (IsAscii(own) && ReadRecordDate(own, "", locale) == time) return own;
  return FormatDate(kStampPicture, time);
}

}  // namespace ondura
