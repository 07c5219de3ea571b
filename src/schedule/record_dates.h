#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/local_time.h"
#include "util/locale_date.h"

namespace ondura {

// The key YYYYMMDDHHmm of a text in the fixed form "mm-dd-yyyy H:mm:ss", cut out by position.
std::string SortKeyOfText(std::string_view date);

std::string SortKeyOf(LocalTime time);

// The time that a record's date text means on this machine, or std::nullopt for a text that is not a date.
// The text is in the fixed form or in the machine's own; where it can be read both ways (a machine that
// writes "dd-MM-yyyy") the reading whose key is `sortkey` is meant, and without one the fixed form.
std::optional<LocalTime> ReadRecordDate(std::string_view text, std::string_view sortkey,
                                        const LocaleFacts& locale);

}  // namespace ondura
