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

// The key YYYYMMDDHHmm of a text in the fixed form "mm-dd-yyyy H:mm:ss", cut out by position.
std::string SortKeyOfText(std::string_view date);

std::string SortKeyOf(LocalTime time);

// The time that a record's date text means on this machine, or nothing for a text that is no date. The
// text is in the fixed form or in the machine's own; where it can be read both ways (a machine that writes
// "dd-MM-yyyy") the reading whose key is `sortkey` is meant, and without one the fixed form.
std::optional<LocalTime> ReadRecordDate(std::string_view text, std::string_view sortkey,
                                        const LocaleFacts& locale);

// The time in the machine's own form, or in the fixed one where its own would not be read back as the same
// time without a key.
std::string DefaultDateText(LocalTime time, const LocaleFacts& locale);

}  // namespace ondura
