#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace ondura {

// All text is UTF-8; positions count characters.

// The text up to its first carriage return, and of that the text up to its first NUL.
std::string TrimAtTerminator(std::string_view sText);

// What separates the parts of `present`, the present date and time in the locale's form ("11-14-2026
// 16:39:08"): 1 for "-" in the date, 2 for ":" in the time, 3 for both, 0 for neither.
std::int16_t DetectDateTimeSeparators(std::string_view present);

// The date with "-" as its separator. The separator is looked for at the second and third character, so a
// text without one there has its digits replaced: it must be given a well-formed date.
std::string NormalizeDateSeparator(std::string_view sDate);

// The same for ":" in a time, looked for at the third-, second- and fourth-last character.
std::string NormalizeTimeSeparator(std::string_view sTime);

// Without the blanks around the first backslash that follows a blank, and at both ends.
std::string TrimSpaceFromPathOne(std::string_view sPath);

}  // namespace ondura
