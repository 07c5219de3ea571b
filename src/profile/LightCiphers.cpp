#include "profile/LightCiphers.h"

#include <cstddef>
#include <optional>

namespace ondura {

namespace {

constexpr int kShift = 2;
constexpr int kPairStep = 1;
constexpr std::size_t kPairLength = 2;

// The code page character whose code is `distance` away; std::nullopt if there is none.
std::optional<char> Shifted(char character, int distance) {
  const int code = static_cast<unsigned char>(character) + distance;
  if (code < 0 || code > 255) return std::nullopt;
  return static_cast<char>(code);
}

}  // namespace

std::string LightCiphers::ShiftEncode(std::string_view sText) const {
  std::string result;
  for (const char character : code_page_.FromUtf8(sText)) {
    if (const auto shifted = Shifted(character, kShift)) {
      result += *shifted;
    } else if (!result.empty()) {
      result += result.back();
    }
  }
  return code_page_.ToUtf8(result);
}

std::string LightCiphers::ShiftEncodePlain(std::string_view sText) const { return ShiftEncode(sText); }

std::string LightCiphers::ShiftDecode(std::string_view sText) const {
  std::string result;
  for (const char character : code_page_.FromUtf8(sText)) {
    const auto shifted = Shifted(character, -kShift);
    if (!shifted) return {};
    result += *shifted;
    pump_.Pump();
  }
  return code_page_.ToUtf8(result);
}

std::string LightCiphers::PairEncode(std::string_view sText) const {
  std::string result;
  for (const char character : code_page_.FromUtf8(sText)) {
    result += character;
    result += Shifted(character, kPairStep).value_or(character);
  }
  return code_page_.ToUtf8(result);
}

std::string LightCiphers::PairDecode(std::string_view sText) const {
  const std::string pairs = code_page_.FromUtf8(sText);
  std::string result;
  for (std::size_t at = 0; at < pairs.size(); at += kPairLength) {
    const auto shifted = Shifted(pairs[at], -kShift);
    if (!shifted) return {};
    result += *shifted;
  }
  return code_page_.ToUtf8(result);
}

}  // namespace ondura
