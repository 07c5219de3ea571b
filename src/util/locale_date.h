#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/local_time.h"

namespace ondura {

// The machine's date and time pictures, such as "dd.MM.yyyy" and "HH:mm:ss"; empty where it has none.
struct LocaleFacts {
  std::string date_format;
  std::string time_format;
};

// True where the date picture starts with the day.
bool IsDayFirst(const LocaleFacts& locale);
bool IsDayFirst(std::string_view date_format);

// The time of a text that has its date as "MM-dd-yyyy", or in the machine's own form. The time of day may be
// missing, or stand in a common form in place of the machine's own. std::nullopt for a text that is no such
// date.
std::optional<LocalTime> ReadFixedForm(std::string_view text, const LocaleFacts& locale);
std::optional<LocalTime> ReadOwnForm(std::string_view text, const LocaleFacts& locale);

// A text that can be read both ways is in the fixed form.
std::optional<LocalTime> ReadEitherForm(std::string_view text, const LocaleFacts& locale);

// The time in the machine's own form, for people; in the fixed one where the machine has none.
std::string OwnDateText(LocalTime time, const LocaleFacts& locale);

// The same for files: in the fixed form, too, where the machine's own would not be read back by
// ReadEitherForm as the same time.
std::string DefaultDateText(LocalTime time, const LocaleFacts& locale);

}  // namespace ondura
