#include "util/cBase64.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace ondura {

namespace {

constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t kOutside = 254;
constexpr std::uint8_t kPadding = 255;
constexpr std::uint8_t kHighBit = 0x80;
constexpr std::size_t kGroupLetters = 4;
constexpr std::size_t kGroupBytes = 3;

constexpr std::uint8_t ByteOf(char character) { return static_cast<std::uint8_t>(character); }

constexpr std::array<std::uint8_t, 256> MakeDecodingTable() {
  std::array<std::uint8_t, 256> table{};
  table.fill(kOutside);
  for (std::size_t position = 0; position < kAlphabet.size(); ++position) {
    table[ByteOf(kAlphabet[position])] = static_cast<std::uint8_t>(position);
    table[ByteOf(kAlphabet[position]) | kHighBit] = static_cast<std::uint8_t>(position);
  }
  table['='] = kPadding;
  table['=' | kHighBit] = kPadding;
  return table;
}

constexpr std::array<std::uint32_t, 32> MakePowers() {
  std::array<std::uint32_t, 32> powers{};
  for (std::size_t exponent = 0; exponent < powers.size(); ++exponent) powers[exponent] = 1U << exponent;
  return powers;
}

constexpr auto kDecodingTable = MakeDecodingTable();
constexpr auto kPowers = MakePowers();

// The table entries of the bytes that count.
std::string EntriesOf(std::string_view bytes) {
  std::string entries;
  entries.reserve(bytes.size());
  for (const char byte : bytes) {
    const std::uint8_t entry = kDecodingTable[ByteOf(byte)];
    if (entry != kOutside) entries += static_cast<char>(entry);
  }
  return entries;
}

// A single letter holds no whole byte but still gives one, with the missing bits zero.
std::size_t BytesIn(std::size_t letters) {
  if (letters == 0) return 0;
  return letters == 1 ? 1 : letters - 1;
}

void AppendGroup(std::string& bytes, std::string_view entries) {
  const std::size_t letters = std::min(entries.find(static_cast<char>(kPadding)), entries.size());
  std::uint32_t bits = 0;
  for (std::size_t i = 0; i < kGroupLetters; ++i) {
    bits = bits << 6U | (i < letters ? ByteOf(entries[i]) : 0U);
  }
  for (std::size_t i = 0; i < BytesIn(letters); ++i) {
    bytes += static_cast<char>(bits >> (16U - 8U * i) & 0xFFU);
  }
}

void AppendLetters(std::string& text, std::string_view group) {
  std::uint32_t bits = 0;
  for (std::size_t i = 0; i < kGroupBytes; ++i) {
    bits = bits << 8U | (i < group.size() ? ByteOf(group[i]) : 0U);
  }
  for (std::size_t i = 0; i < kGroupLetters; ++i) {
    text += i <= group.size() ? kAlphabet[bits >> (18U - 6U * i) & 0x3FU] : '=';
  }
}

}  // namespace

std::string cBase64::encode(std::string_view sText) {
  const std::string bytes = code_page_.FromUtf8(sText);
  std::string letters;
  letters.reserve((bytes.size() + kGroupBytes - 1) / kGroupBytes * kGroupLetters);
  for (std::size_t at = 0; at < bytes.size(); at += kGroupBytes) {
    AppendLetters(letters, std::string_view{bytes}.substr(at, kGroupBytes));
  }
  encoded_message_ = code_page_.ToUtf8(letters);
  return encoded_message_;
}

std::string cBase64::Decode(std::string_view sText) {
  const std::string entries = EntriesOf(code_page_.FromUtf8(sText));
  std::string bytes;
  bytes.reserve(entries.size() / kGroupLetters * kGroupBytes + kGroupBytes);
  for (std::size_t at = 0; at < entries.size(); at += kGroupLetters) {
    AppendGroup(bytes, std::string_view{entries}.substr(at, kGroupLetters));
  }
  decoded_message_ = code_page_.ToUtf8(bytes);
  return decoded_message_;
}

std::uint8_t cBase64::RShiftByte(std::uint8_t bValue, int nBits) {
  const auto divisor = Power2(nBits);
  return divisor ? static_cast<std::uint8_t>(bValue / *divisor) : std::uint8_t{0};
}

std::optional<std::uint32_t> cBase64::Power2(int nExponent) {
  if (nExponent < 0 || static_cast<std::size_t>(nExponent) >= kPowers.size()) return std::nullopt;
  return kPowers[static_cast<std::size_t>(nExponent)];
}

}  // namespace ondura
