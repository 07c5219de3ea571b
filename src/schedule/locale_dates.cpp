#include "schedule/locale_dates.h"

#include <optional>
#include <vector>

#include "text/text.h"
#include "util/locale_picture.h"

namespace ondura {

namespace {

constexpr std::size_t kMostTokens = 16;

// Where a format names the half of the day: after hour, minute, second and their separators.
constexpr std::size_t kHalfToken = 6;

constexpr std::size_t kShortName = 3;

enum class Blank { kInWord, kSeparates };

bool IsWordCharacter(char character, Blank blank) {
  return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
         (character >= 'a' && character <= 'z') || (character == ' ' && blank == Blank::kInWord);
}

// For the bytes of a character after its first.
bool ContinuesCharacter(char character) { return (static_cast<unsigned char>(character) & 0xC0U) == 0x80U; }

// Words and the single separators between them, in turn. A word between two separators is empty. A separator
// is one character, of however many bytes.
std::vector<std::string> TokensOf(std::string_view format, Blank blank) {
  std::vector<std::string> tokens(1);
  for (const char character : format) {
    if (IsWordCharacter(character, blank)) {
      tokens.back() += character;
    } else if (ContinuesCharacter(character) && tokens.size() > 1 && tokens.back().empty()) {
      tokens[tokens.size() - 2] += character;
    } else {
      tokens.emplace_back(1, character);
      tokens.emplace_back();
    }
  }
  if (tokens.size() > kMostTokens) tokens.resize(kMostTokens);
  return tokens;
}

// Characters `first` to `last` of the fixed form, counted from 1.
std::string_view Positions(std::string_view text, std::size_t first, std::size_t last) {
  return first <= text.size() ? text.substr(first - 1, last - first + 1) : std::string_view{};
}

std::string_view MonthName(std::string_view text) {
  const auto number = ParseInteger(Positions(text, 1, 2)).value_or(0);
  if (number < 1 || number > 12) return {};
  return kMonthNames[static_cast<std::size_t>(number - 1)].substr(0, kShortName);
}

std::string_view DateField(const std::string& token, std::string_view text) {
  const std::string name = ToUpper(token);
  if (name == "D" || name == "DD") return Positions(text, 4, 5);
  if (name == "M" || name == "MM") return Positions(text, 1, 2);
  if (name == "MMM") return MonthName(text);
  if (name == "YY") return Positions(text, 9, 10);
  if (name == "YYYY") return Positions(text, 7, 10);
  if (name == "HH" || name == "SS" || name == "TT") return {};
  return token;
}

std::optional<std::string_view> TimeField(const std::string& name, std::string_view text) {
  if (name == "M" || name == "MM") return Positions(text, 15, 16);
  if (name == "S" || name == "SS") return Positions(text, 18, 19);
  for (const std::string_view unused : {"DD", "YY", "YYYY", "TT", "AM", "PM"}) {
    if (name == unused) return std::string_view{};
  }
  return std::nullopt;
}

// The digits that an hour starts with; nothing for a text without any.
std::optional<std::int64_t> HourOf(std::string_view text) {
  const std::string_view digits = Positions(text, 12, 13);
  return ParseInteger(digits.substr(0, digits.find_first_not_of("0123456789")));
}

}  // namespace

std::string ConvertToDate(std::string_view text, std::string_view format) {
  std::string result;
  for (const std::string& token : TokensOf(format, Blank::kInWord)) result += DateField(token, text);
  return result;
}

std::string ConvertToTime(std::string_view text, std::string_view format) {
  const auto tokens = TokensOf(format, Blank::kSeparates);
  const bool has_halves = tokens.size() > kHalfToken && tokens[kHalfToken] == "tt";
  const auto hour = HourOf(text);
  const bool is_afternoon = hour && *hour > 11;
  std::string result;
  std::string_view marker;
  for (const std::string& token : tokens) {
    const std::string name = ToUpper(token);
    if (name == "H" || name == "HH") {
      if (!hour) continue;
      result += std::to_string(has_halves && is_afternoon ? *hour - 12 : *hour);
      if (result.size() == 1) result.insert(0, "0");
      if (has_halves) marker = is_afternoon ? " PM" : " AM";
    } else {
      result += TimeField(name, text).value_or(token);
    }
  }
  if (marker.empty()) return result;
  // The format's own blank before the half of the day is already there.
  result.resize(result.find_last_not_of(' ') + 1);
  return result.append(marker);
}

}  // namespace ondura
