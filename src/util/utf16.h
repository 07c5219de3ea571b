#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ondura {

inline constexpr std::string_view kUtf16Mark = "\xFF\xFE";

struct DecodedCharacter {
  char32_t character = 0;
  std::size_t bytes = 1;  // how many the character takes; 1 where it is not valid
  bool valid = false;
};

// The first character of a non-empty UTF-8 text (RFC 3629).
DecodedCharacter DecodeUtf8(std::string_view text);

void AppendUtf8(std::string& text, char32_t character);

// UTF-16 little endian bytes without a mark. A byte that is not UTF-8 becomes U+FFFD.
std::string ToUtf16(std::string_view utf8);

// Appends instead of making a new text, for long runs of lines.
void AppendUtf16(std::string& bytes, std::string_view utf8);

// UTF-8 of UTF-16 little endian bytes; a mark at the start is dropped, and so is an odd last byte. A lone
// surrogate becomes U+FFFD.
std::string FromUtf16(std::string_view bytes);

// How many UTF-16 units the text takes: its length as the platform counts it.
std::size_t Utf16Length(std::string_view utf8);

}  // namespace ondura
