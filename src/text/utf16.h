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

// The same, but a lone surrogate in three bytes is a character too. Names on the platform's disks may hold
// one, and a name that is changed on its way is the name of another file.
DecodedCharacter DecodeWtf8(std::string_view text);

void AppendUtf8(std::string& text, char32_t character);

// Writes the one or two units of the character, U+FFFD for one that is not valid. Returns where the next
// goes.
inline char16_t* WriteUtf16Units(const DecodedCharacter& decoded, char16_t* into) {
  const char32_t character = decoded.valid ? decoded.character : U'\uFFFD';
  if (character < 0x10000) {
    *into++ = static_cast<char16_t>(character);
    return into;
  }
  *into++ = static_cast<char16_t>(0xD800 + ((character - 0x10000) >> 10));
  *into++ = static_cast<char16_t>(0xDC00 + ((character - 0x10000) & 0x3FF));
  return into;
}

// UTF-16 little endian bytes without a mark. A lone surrogate stays one; another byte that is not UTF-8
// becomes U+FFFD.
std::string ToUtf16(std::string_view utf8);

// Appends instead of making a new text, for long runs of lines.
void AppendUtf16(std::string& bytes, std::string_view utf8);

// UTF-8 of UTF-16 little endian bytes; a mark at the start is dropped, and so is an odd last byte. A lone
// surrogate stays as its three bytes.
std::string FromUtf16(std::string_view bytes);

// The same for a text that is not a file, where the mark is a character like any other.
std::string FromUtf16Units(std::string_view bytes);

// How many UTF-16 units the text takes: its length as the platform counts it.
std::size_t Utf16Length(std::string_view utf8);

}  // namespace ondura
