#pragma once

#include <string>
#include <string_view>

namespace ondura {

// The date of a text in the fixed form "mm-dd-yyyy HH:mm:ss", rendered by a date format such as
// "dd/MM/yyyy". Words of the format that are not a date field go into the result as they are; a format of
// more than 16 tokens loses those beyond.
std::string ConvertToDate(std::string_view text, std::string_view format);

// The same for the time of day and a format such as "h:mm:ss tt". On a 12-hour clock noon and midnight
// both read "00".
std::string ConvertToTime(std::string_view text, std::string_view format);

}  // namespace ondura
