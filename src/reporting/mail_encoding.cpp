#include "reporting/mail_encoding.h"

#include <array>
#include <charconv>

#include "text/text.h"

namespace ondura {

namespace {

bool StaysAsItIs(std::uint8_t byte) {
  return (byte >= '/' && byte <= '9') || (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z');
}

std::string HexOf(std::uint8_t byte) {
  std::array<char, 2> digits{};
  char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), byte, 16).ptr;
  return ToUpper({digits.data(), end});
}

}  // namespace

std::vector<std::uint8_t> UTF8_Encode(std::string_view sText) { return {sText.begin(), sText.end()}; }

std::string URLEncodeWebd(std::string_view sText) {
  std::string encoded;
  if (Trim(sText).empty()) return encoded;
  for (const std::uint8_t byte : UTF8_Encode(sText)) {
    if (StaysAsItIs(byte)) {
      encoded += static_cast<char>(byte);
    } else {
      encoded.append("%").append(HexOf(byte));
    }
  }
  return encoded;
}

}  // namespace ondura
