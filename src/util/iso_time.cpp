#include "util/iso_time.h"

#include <cstdlib>

#include "text/text.h"
#include "util/date_text.h"

namespace ondura {

namespace {

// The number that stands at `at`; -1 where a character is no digit.
int NumberAt(std::string_view text, std::size_t at, std::size_t length) {
  int number = 0;
  for (const char c : text.substr(at, length)) {
    if (c < '0' || c > '9') return -1;
    number = number * 10 + (c - '0');
  }
  return number;
}

bool HasForm(std::string_view text, std::string_view form) {
  if (text.size() < form.size()) return false;
  for (std::size_t i = 0; i < form.size(); ++i) {
    if (form[i] != '0' && form[i] != text[i]) return false;
  }
  return true;
}

}  // namespace

std::string IsoTime(Clock& clock, LocalTime time) {
  const auto offset = clock.UtcOffset(time).count();
  const auto minutes = static_cast<int>(std::abs(offset));
  return FormatDate("yyyy-mm-dd", time) + "T" + FormatDate("HH:mm:ss", time) + (offset < 0 ? "-" : "+") +
         Padded(minutes / 60, 2) + ":" + Padded(minutes % 60, 2);
}

std::optional<LocalTime> ParseIsoTime(std::string_view text) {
  if (!HasForm(text, "0000-00-00")) return std::nullopt;
  TimeFields fields{NumberAt(text, 0, 4), NumberAt(text, 5, 2), NumberAt(text, 8, 2), 0, 0, 0};
  const std::string_view rest = text.substr(10);
  if (!rest.empty()) {
    if ((rest[0] != 'T' && rest[0] != ' ') || !HasForm(rest.substr(1), "00:00")) return std::nullopt;
    fields.hour = NumberAt(rest, 1, 2);
    fields.minute = NumberAt(rest, 4, 2);
    if (HasForm(rest.substr(6), ":00")) fields.second = NumberAt(rest, 7, 2);
  }
  const bool has_digits = fields.year >= 0 && fields.month >= 0 && fields.day >= 0 && fields.hour >= 0 &&
                          fields.minute >= 0 && fields.second >= 0;
  if (!has_digits || !IsCalendarTime(fields)) return std::nullopt;
  return ToLocalTime(fields);
}

}  // namespace ondura
