#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ondura {

// The bytes of the text in UTF-8; none for an empty text.
std::vector<std::uint8_t> UTF8_Encode(std::string_view sText);

// Digits, letters and "/" as they are, every other byte of the text as "%" and its hexadecimal digits, of
// which a byte below 16 has one. Empty for a text of blanks.
std::string URLEncodeWebd(std::string_view sText);

}  // namespace ondura
