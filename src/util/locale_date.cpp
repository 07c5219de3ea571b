#include "util/locale_date.h"

#include <algorithm>
#include <array>

#include "text/text.h"
#include "util/date_text.h"
#include "util/locale_picture.h"

namespace ondura {

namespace {

constexpr std::string_view kFixedDatePicture = "MM-dd-yyyy";
constexpr std::array<std::string_view, 3> kCommonTimePictures{"H:mm:ss", "H:mm", "h:mm:ss tt"};

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

bool IsDayFirst(const LocaleFacts& locale) { return IsDayFirst(locale.date_format); }

bool IsDayFirst(std::string_view date_format) {
  return date_format.starts_with('d') || date_format.starts_with('D');
}

std::optional<LocalTime> ReadFixedForm(std::string_view text, const LocaleFacts& locale) {
  return ReadBy(kFixedDatePicture, text, locale);
}

std::optional<LocalTime> ReadOwnForm(std::string_view text, const LocaleFacts& locale) {
  return ReadBy(locale.date_format, text, locale);
}

std::optional<LocalTime> ReadEitherForm(std::string_view text, const LocaleFacts& locale) {
  const auto fixed = ReadFixedForm(text, locale);
  return fixed ? fixed : ReadOwnForm(text, locale);
}

std::string OwnDateText(LocalTime time, const LocaleFacts& locale) {
  if (locale.date_format.empty() || locale.time_format.empty()) return FormatDate(kStampPicture, time);
  const TimeFields fields = ToFields(time);
  return WriteByPicture({locale.date_format, PictureKind::kDate}, fields) + " " +
         WriteByPicture({locale.time_format, PictureKind::kTime}, fields);
}

std::string DefaultDateText(LocalTime time, const LocaleFacts& locale) {
  std::string own = OwnDateText(time, locale);
  // Files are in the code page, which may lack other characters.
  if (IsAscii(own) && ReadEitherForm(own, locale) == time) return own;
  return FormatDate(kStampPicture, time);
}

}  // namespace ondura
