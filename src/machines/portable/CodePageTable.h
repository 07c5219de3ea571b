#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "platform/CodePage.h"

namespace ondura {

// A single-byte code page as a table. Bytes that the page leaves undefined map to the control character of
// the same number, so every byte goes to UTF-8 and back.
class CodePageTable : public CodePage {
 public:
  // Windows-1252.
  CodePageTable();

  // The page of that Windows number: 1250, 1251 or 1252. std::nullopt for any other.
  static std::optional<CodePageTable> ForNumber(int number);

  std::string FromUtf8(std::string_view text) override;
  std::string ToUtf8(std::string_view bytes) override;

  // The same for readers that hold the table by const reference.
  [[nodiscard]] std::string Encode(std::string_view text) const;
  [[nodiscard]] std::string Decode(std::string_view bytes) const;

  // The byte of the upper-case letter, or `byte` itself for a byte that is not a letter.
  [[nodiscard]] char UpperByte(char byte) const { return upper_[static_cast<unsigned char>(byte)]; }

 private:
  using UpperHalf = std::array<char16_t, 128>;

  explicit CodePageTable(const UpperHalf& upper_half);

  std::array<char32_t, 256> characters_{};
  std::array<char, 256> upper_{};
  std::unordered_map<char32_t, char> bytes_;
};

}  // namespace ondura
