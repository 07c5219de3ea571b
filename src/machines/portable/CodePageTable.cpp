#include "machines/portable/CodePageTable.h"

#include "text/text.h"
#include "text/utf16.h"

namespace ondura {

namespace {

using UpperHalf = std::array<char16_t, 128>;

constexpr UpperHalf kWindows1250 = {
    0x20AC, 0x0081, 0x201A, 0x0083, 0x201E, 0x2026, 0x2020, 0x2021, 0x0088, 0x2030, 0x0160, 0x2039, 0x015A,
    0x0164, 0x017D, 0x0179, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, 0x0098, 0x2122,
    0x0161, 0x203A, 0x015B, 0x0165, 0x017E, 0x017A, 0x00A0, 0x02C7, 0x02D8, 0x0141, 0x00A4, 0x0104, 0x00A6,
    0x00A7, 0x00A8, 0x00A9, 0x015E, 0x00AB, 0x00AC, 0x00AD, 0x00AE, 0x017B, 0x00B0, 0x00B1, 0x02DB, 0x0142,
    0x00B4, 0x00B5, 0x00B6, 0x00B7, 0x00B8, 0x0105, 0x015F, 0x00BB, 0x013D, 0x02DD, 0x013E, 0x017C, 0x0154,
    0x00C1, 0x00C2, 0x0102, 0x00C4, 0x0139, 0x0106, 0x00C7, 0x010C, 0x00C9, 0x0118, 0x00CB, 0x011A, 0x00CD,
    0x00CE, 0x010E, 0x0110, 0x0143, 0x0147, 0x00D3, 0x00D4, 0x0150, 0x00D6, 0x00D7, 0x0158, 0x016E, 0x00DA,
    0x0170, 0x00DC, 0x00DD, 0x0162, 0x00DF, 0x0155, 0x00E1, 0x00E2, 0x0103, 0x00E4, 0x013A, 0x0107, 0x00E7,
    0x010D, 0x00E9, 0x0119, 0x00EB, 0x011B, 0x00ED, 0x00EE, 0x010F, 0x0111, 0x0144, 0x0148, 0x00F3, 0x00F4,
    0x0151, 0x00F6, 0x00F7, 0x0159, 0x016F, 0x00FA, 0x0171, 0x00FC, 0x00FD, 0x0163, 0x02D9};

constexpr std::array<char16_t, 64> kWindows1251Signs = {
    0x0402, 0x0403, 0x201A, 0x0453, 0x201E, 0x2026, 0x2020, 0x2021, 0x20AC, 0x2030, 0x0409, 0x2039, 0x040A,
    0x040C, 0x040B, 0x040F, 0x0452, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, 0x0098, 0x2122,
    0x0459, 0x203A, 0x045A, 0x045C, 0x045B, 0x045F, 0x00A0, 0x040E, 0x045E, 0x0408, 0x00A4, 0x0490, 0x00A6,
    0x00A7, 0x0401, 0x00A9, 0x0404, 0x00AB, 0x00AC, 0x00AD, 0x00AE, 0x0407, 0x00B0, 0x00B1, 0x0406, 0x0456,
    0x0491, 0x00B5, 0x00B6, 0x00B7, 0x0451, 0x2116, 0x0454, 0x00BB, 0x0458, 0x0405, 0x0455, 0x0457};

constexpr std::array<char16_t, 32> kWindows1252Signs = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

// The signs first, then characters in order from `next` on.
template <std::size_t kCount>
constexpr UpperHalf Continued(const std::array<char16_t, kCount>& signs, char16_t next) {
  UpperHalf half{};
  for (std::size_t i = 0; i < half.size(); ++i) {
    half[i] = i < kCount ? signs[i] : static_cast<char16_t>(next + (i - kCount));
  }
  return half;
}

constexpr UpperHalf kWindows1251 = Continued(kWindows1251Signs, 0x0410);
constexpr UpperHalf kWindows1252 = Continued(kWindows1252Signs, 0x00A0);

constexpr char32_t kSecondPlane = 0x10000;

bool IsAscii(std::string_view text) {
  for (const char c : text) {
    if (static_cast<unsigned char>(c) >= 0x80) return false;
  }
  return true;
}

}  // namespace

CodePageTable::CodePageTable() : CodePageTable(kWindows1252) {}

CodePageTable::CodePageTable(const UpperHalf& upper_half) {
  for (std::size_t byte = 0; byte < 256; ++byte) {
    characters_[byte] = byte < 128 ? static_cast<char32_t>(byte) : upper_half[byte - 128];
    bytes_.emplace(characters_[byte], static_cast<char>(byte));
  }
  for (std::size_t byte = 0; byte < 256; ++byte) {
    std::string letter;
    AppendUtf8(letter, characters_[byte]);
    const auto found = bytes_.find(DecodeUtf8(ToUpper(letter)).character);
    upper_[byte] = found == bytes_.end() ? static_cast<char>(byte) : found->second;
  }
}

std::optional<CodePageTable> CodePageTable::ForNumber(int number) {
  switch (number) {
    case 1250:
      return CodePageTable(kWindows1250);
    case 1251:
      return CodePageTable(kWindows1251);
    case 1252:
      return CodePageTable(kWindows1252);
    default:
      return std::nullopt;
  }
}

std::string CodePageTable::FromUtf8(std::string_view text) { return Encode(text); }

std::string CodePageTable::ToUtf8(std::string_view bytes) { return Decode(bytes); }

std::string CodePageTable::Encode(std::string_view text) const {
  if (IsAscii(text)) return std::string{text};
  std::string bytes;
  bytes.reserve(text.size());
  while (!text.empty()) {
    const DecodedCharacter next = DecodeWtf8(text);
    const auto found = next.valid ? bytes_.find(next.character) : bytes_.end();
    if (found != bytes_.end()) {
      bytes += found->second;
    } else {
      bytes += next.character < kSecondPlane ? "?" : "??";
    }
    text.remove_prefix(next.bytes);
  }
  return bytes;
}

std::string CodePageTable::Decode(std::string_view bytes) const {
  if (IsAscii(bytes)) return std::string{bytes};
  std::string text;
  text.reserve(bytes.size() * 2);
  for (const char byte : bytes) AppendUtf8(text, characters_[static_cast<unsigned char>(byte)]);
  return text;
}

}  // namespace ondura
