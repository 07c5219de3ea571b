#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/CodePage.h"

namespace ondura {

// Base64 (RFC 4648, no line breaks) of the system code page bytes of a text. Texts are UTF-8.
class cBase64 {
 public:
  explicit cBase64(CodePage& code_page) : code_page_(code_page) {}

  // The results of the last Decode and the last encode; empty before the first.
  [[nodiscard]] const std::string& DecodedMessage() const { return decoded_message_; }
  [[nodiscard]] const std::string& EncodedMessage() const { return encoded_message_; }

  std::string encode(std::string_view sText);

  // Never fails: bytes outside the alphabet are passed over, a letter with the high bit set counts as its
  // 7-bit letter, and a last group that is not whole gives the bytes that it still holds.
  std::string Decode(std::string_view sText);

  // 0 for a count outside 0 to 31.
  [[nodiscard]] static std::uint8_t RShiftByte(std::uint8_t bValue, int nBits);

  // std::nullopt for an exponent outside 0 to 31.
  [[nodiscard]] static std::optional<std::uint32_t> Power2(int nExponent);

 private:
  CodePage& code_page_;
  std::string decoded_message_;
  std::string encoded_message_;
};

}  // namespace ondura
