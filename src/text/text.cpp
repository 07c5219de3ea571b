#include "text/text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "text/utf16.h"

namespace ondura {

namespace {

struct CaseRange {
  char32_t first_upper;
  char32_t last_upper;
  std::int32_t distance;  // from the upper to the lower letter
  char32_t step;          // 1 for blocks of capitals, 2 where capitals and small letters alternate
};

// The ranges of the alphabets that file names use; a full table would not change a match in practice.
constexpr std::array kCaseRanges{
    CaseRange{0xC0, 0xD6, 32, 1},     CaseRange{0xD8, 0xDE, 32, 1},    CaseRange{0x100, 0x12E, 1, 2},
    CaseRange{0x132, 0x136, 1, 2},    CaseRange{0x139, 0x147, 1, 2},   CaseRange{0x14A, 0x176, 1, 2},
    CaseRange{0x178, 0x178, -121, 1}, CaseRange{0x179, 0x17D, 1, 2},   CaseRange{0x1CD, 0x1DB, 1, 2},
    CaseRange{0x1DE, 0x1EE, 1, 2},    CaseRange{0x1F8, 0x21E, 1, 2},   CaseRange{0x222, 0x232, 1, 2},
    CaseRange{0x386, 0x386, 38, 1},   CaseRange{0x388, 0x38A, 37, 1},  CaseRange{0x38C, 0x38C, 64, 1},
    CaseRange{0x38E, 0x38F, 63, 1},   CaseRange{0x391, 0x3A1, 32, 1},  CaseRange{0x3A3, 0x3AB, 32, 1},
    CaseRange{0x400, 0x40F, 80, 1},   CaseRange{0x410, 0x42F, 32, 1},  CaseRange{0x460, 0x480, 1, 2},
    CaseRange{0x48A, 0x4BE, 1, 2},    CaseRange{0x4C1, 0x4CD, 1, 2},   CaseRange{0x4D0, 0x52E, 1, 2},
    CaseRange{0x531, 0x556, 48, 1},   CaseRange{0x1E00, 0x1E94, 1, 2}, CaseRange{0x1EA0, 0x1EFE, 1, 2},
    CaseRange{0xFF21, 0xFF3A, 32, 1},
};

constexpr char32_t kFirstBeyondAscii = 0x80;
constexpr char32_t kAsciiDistance = 'a' - 'A';

bool IsUpperOf(const CaseRange& range, char32_t letter) {
  return letter >= range.first_upper && letter <= range.last_upper &&
         (letter - range.first_upper) % range.step == 0;
}

char32_t Upper(char32_t letter) {
  if (letter < kFirstBeyondAscii) return letter >= 'a' && letter <= 'z' ? letter - kAsciiDistance : letter;
  for (const CaseRange& range : kCaseRanges) {
    const char32_t upper = letter - static_cast<char32_t>(range.distance);
    if (IsUpperOf(range, upper)) return upper;
  }
  return letter;
}

char32_t Lower(char32_t letter) {
  if (letter < kFirstBeyondAscii) return letter >= 'A' && letter <= 'Z' ? letter + kAsciiDistance : letter;
  for (const CaseRange& range : kCaseRanges) {
    if (IsUpperOf(range, letter)) return letter + static_cast<char32_t>(range.distance);
  }
  return letter;
}

template <typename Change>
std::string ChangeLetters(std::string_view text, Change change) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const auto byte = static_cast<unsigned char>(text[at]);
    if (byte < 0x80) {
      result += static_cast<char>(change(byte));
      ++at;
      continue;
    }
    const DecodedCharacter next = DecodeUtf8(text.substr(at));
    if (next.valid) {
      AppendUtf8(result, change(next.character));
    } else {
      result.append(text.substr(at, next.bytes));
    }
    at += next.bytes;
  }
  return result;
}

// The number parsers know no plus sign.
std::string_view WithoutPlus(std::string_view number) {
  const bool has_plus = number.starts_with('+') && !number.starts_with("+-");
  return has_plus ? number.substr(1) : number;
}

}  // namespace

std::string_view Trim(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::vector<std::string> Split(std::string_view text, std::string_view separator) {
  std::vector<std::string> parts;
  while (!separator.empty()) {
    const auto at = text.find(separator);
    if (at == std::string_view::npos) break;
    parts.emplace_back(text.substr(0, at));
    text.remove_prefix(at + separator.size());
  }
  parts.emplace_back(text);
  return parts;
}

std::string Join(const std::vector<std::string>& parts, std::string_view separator) {
  std::string result;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    if (i > 0) result += separator;
    result += parts[i];
  }
  return result;
}

std::string ReplaceAll(std::string_view text, std::string_view from, std::string_view to) {
  std::string result;
  while (!from.empty()) {
    const auto at = text.find(from);
    if (at == std::string_view::npos) break;
    result.append(text.substr(0, at)).append(to);
    text.remove_prefix(at + from.size());
  }
  return result.append(text);
}

std::string ToUpper(std::string_view text) { return ChangeLetters(text, Upper); }

std::string ToLower(std::string_view text) { return ChangeLetters(text, Lower); }

char32_t LowerOf(char32_t letter) { return Lower(letter); }

std::string_view FileNameOf(std::string_view path) { return path.substr(path.find_last_of("\\/") + 1); }

bool EqualsIgnoringCase(std::string_view left, std::string_view right) {
  return left == right || ToLower(left) == ToLower(right);
}

bool StartsWithIgnoringCase(std::string_view text, std::string_view prefix) {
  return ToLower(text).starts_with(ToLower(prefix));
}

std::optional<double> ParseNumber(std::string_view text) {
  text = WithoutPlus(Trim(text));
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{} || end != text.data() + text.size() || !std::isfinite(number)) return std::nullopt;
  return number;
}

bool ReadsAsTrue(std::string_view text) {
  return EqualsIgnoringCase(Trim(text), "true") || ParseNumber(text).value_or(0) != 0;
}

std::optional<std::int64_t> ParseInteger(std::string_view text) {
  text = WithoutPlus(Trim(text));
  std::int64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return number;
}

std::optional<std::int16_t> ParseInt16(std::string_view text) {
  const auto number = ParseInteger(text);
  using Limits = std::numeric_limits<std::int16_t>;
  if (!number || *number < Limits::min() || *number > Limits::max()) return std::nullopt;
  return static_cast<std::int16_t>(*number);
}

std::string NumberText(double number) {
  std::array<char, 64> buffer{};
  constexpr double kExactWhole = 1e15;
  const bool is_whole = std::fabs(number) < kExactWhole && number == std::floor(number);
  const auto end =
      is_whole
          ? std::to_chars(buffer.data(), buffer.data() + buffer.size(), static_cast<std::int64_t>(number)).ptr
          : std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::general,
                          15)
                .ptr;
  return {buffer.data(), end};
}

std::string Padded(int number, int width) {
  std::string digits = std::to_string(number);
  const auto wanted = static_cast<std::size_t>(width);
  if (digits.size() < wanted) digits.insert(0, wanted - digits.size(), '0');
  return digits;
}

std::string WithBackslash(std::string_view folder) {
  std::string result{folder};
  if (!result.ends_with('\\')) result += '\\';
  return result;
}

std::string_view WithoutLast(std::string_view text) {
  constexpr std::size_t kMostBytes = 4;
  for (std::size_t bytes = 2; bytes <= kMostBytes && bytes <= text.size(); ++bytes) {
    const DecodedCharacter last = DecodeUtf8(text.substr(text.size() - bytes));
    if (last.valid && last.bytes == bytes) return text.substr(0, text.size() - bytes);
  }
  return text.substr(0, text.empty() ? 0 : text.size() - 1);
}

}  // namespace ondura
