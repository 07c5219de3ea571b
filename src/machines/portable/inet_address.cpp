#include "machines/portable/inet_address.h"

#include <charconv>

namespace ondura {

namespace {

constexpr std::uint32_t kNoAddress = 0xFFFFFFFF;
constexpr int kParts = 4;
constexpr int kBitsOfPart = 8;

// Takes a number as the language writes it from the front of `text`.
std::optional<std::uint32_t> TakeNumber(std::string_view& text) {
  int base = 10;
  if (text.starts_with("0x") || text.starts_with("0X")) {
    base = 16;
    text.remove_prefix(2);
  } else if (text.starts_with('0')) {
    base = 8;
  }
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
  if (error != std::errc{}) return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return number;
}

}  // namespace

std::optional<std::uint32_t> InetAddress(std::string_view text) {
  if (text == " ") return 0;
  std::uint64_t address = 0;
  for (int part = 0; part < kParts; ++part) {
    const auto number = TakeNumber(text);
    if (!number) return std::nullopt;
    const bool is_last = !text.starts_with('.');
    const int bits = is_last ? (kParts - part) * kBitsOfPart : kBitsOfPart;
    if (std::uint64_t{*number} >> bits != 0) return std::nullopt;
    address = address << bits | *number;
    if (is_last) {
      const bool is_whole = text.empty() || text.find_first_of(" \t\n\v\f\r") == 0;
      return is_whole && address != kNoAddress ? std::optional{static_cast<std::uint32_t>(address)}
                                               : std::nullopt;
    }
    text.remove_prefix(1);
  }
  return std::nullopt;
}

}  // namespace ondura
