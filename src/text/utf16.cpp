#include "text/utf16.h"

#include <array>

namespace ondura {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

void AppendUnit(std::string& bytes, char32_t unit) {
  bytes += static_cast<char>(unit & 0xFF);
  bytes += static_cast<char>(unit >> 8);
}

char32_t UnitAt(std::string_view bytes, std::size_t at) {
  return static_cast<char32_t>(static_cast<unsigned char>(bytes[at])) |
         static_cast<char32_t>(static_cast<unsigned char>(bytes[at + 1])) << 8;
}

bool IsHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool IsLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }
bool IsSurrogate(char32_t unit) { return unit >= 0xD800 && unit < 0xE000; }

}  // namespace

DecodedCharacter DecodeUtf8(std::string_view text) {
  const DecodedCharacter decoded = DecodeWtf8(text);
  return IsSurrogate(decoded.character) ? DecodedCharacter{} : decoded;
}

DecodedCharacter DecodeWtf8(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  if (lead < 0x80) return {lead, 1, true};
  std::size_t bytes = 0;
  char32_t character = 0;
  char32_t smallest = 0;
  if ((lead & 0xE0) == 0xC0) {
    bytes = 2, character = lead & 0x1FU, smallest = 0x80;
  } else if ((lead & 0xF0) == 0xE0) {
    bytes = 3, character = lead & 0x0FU, smallest = 0x800;
  } else if ((lead & 0xF8) == 0xF0) {
    bytes = 4, character = lead & 0x07U, smallest = 0x10000;
  } else {
    return {};
  }
  if (text.size() < bytes) return {};
  for (std::size_t i = 1; i < bytes; ++i) {
    if (!IsContinuation(text[i])) return {};
    character = character << 6 | (static_cast<unsigned char>(text[i]) & 0x3FU);
  }
  if (character < smallest || character > 0x10FFFF) return {};
  return {character, bytes, true};
}

void AppendUtf8(std::string& text, char32_t character) {
  if (character < 0x80) {
    text += static_cast<char>(character);
  } else if (character < 0x800) {
    text += static_cast<char>(0xC0 | character >> 6);
    text += static_cast<char>(0x80 | (character & 0x3F));
  } else if (character < 0x10000) {
    text += static_cast<char>(0xE0 | character >> 12);
    text += static_cast<char>(0x80 | (character >> 6 & 0x3F));
    text += static_cast<char>(0x80 | (character & 0x3F));
  } else {
    text += static_cast<char>(0xF0 | character >> 18);
    text += static_cast<char>(0x80 | (character >> 12 & 0x3F));
    text += static_cast<char>(0x80 | (character >> 6 & 0x3F));
    text += static_cast<char>(0x80 | (character & 0x3F));
  }
}

void AppendUtf16(std::string& bytes, std::string_view utf8) {
  for (std::size_t at = 0; at < utf8.size();) {
    if (const auto byte = static_cast<unsigned char>(utf8[at]); byte < 0x80) {
      AppendUnit(bytes, byte);
      ++at;
      continue;
    }
    const DecodedCharacter next = DecodeWtf8(utf8.substr(at));
    std::array<char16_t, 2> units{};
    const char16_t* end = WriteUtf16Units(next, units.data());
    for (const char16_t* unit = units.data(); unit != end; ++unit) AppendUnit(bytes, *unit);
    at += next.bytes;
  }
}

std::string ToUtf16(std::string_view utf8) {
  std::string bytes;
  bytes.reserve(utf8.size() * 2);
  AppendUtf16(bytes, utf8);
  return bytes;
}

std::string FromUtf16(std::string_view bytes) {
  if (bytes.starts_with(kUtf16Mark)) bytes.remove_prefix(kUtf16Mark.size());
  return FromUtf16Units(bytes);
}

std::string FromUtf16Units(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size() / 2);
  for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
    const char32_t unit = UnitAt(bytes, at);
    if (IsHighSurrogate(unit) && at + 3 < bytes.size() && IsLowSurrogate(UnitAt(bytes, at + 2))) {
      AppendUtf8(text, 0x10000 + ((unit - 0xD800) << 10) + (UnitAt(bytes, at + 2) - 0xDC00));
      at += 2;
    } else {
      AppendUtf8(text, unit);
    }
  }
  return text;
}

std::size_t Utf16Length(std::string_view utf8) {
  std::size_t units = 0;
  for (std::size_t at = 0; at < utf8.size();) {
    const DecodedCharacter next = DecodeWtf8(utf8.substr(at));
    units += next.valid && next.character >= 0x10000 ? 2 : 1;
    at += next.bytes;
  }
  return units;
}

}  // namespace ondura
