#include "text/separators.h"

#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <vector>

#include "text/text.h"
#include "text/utf16.h"

namespace ondura {

namespace {

constexpr std::string_view kDateSeparator = "-";
constexpr std::string_view kTimeSeparator = ":";

bool IsDigit(std::string_view character) {
  return character.size() == 1 && character.front() >= '0' && character.front() <= '9';
}

std::vector<std::string_view> CharactersOf(std::string_view text) {
  std::vector<std::string_view> characters;
  while (!text.empty()) {
    characters.push_back(text.substr(0, DecodeUtf8(text).bytes));
    text.remove_prefix(characters.back().size());
  }
  return characters;
}

// The first character at one of the places that is not a digit, or else the last one looked at. Empty if a
// place is after the text's end; a place before its start ends the search.
std::string_view FindSeparator(const std::vector<std::string_view>& characters,
                               std::initializer_list<std::ptrdiff_t> places) {
  std::string_view found;
  for (const std::ptrdiff_t place : places) {
    if (place < 0) break;
    if (place >= std::ssize(characters)) return {};
    found = characters[static_cast<std::size_t>(place)];
    if (!IsDigit(found)) break;
  }
  return found;
}

std::string_view DateSeparatorOf(std::string_view date) { return FindSeparator(CharactersOf(date), {1, 2}); }

std::string_view TimeSeparatorOf(std::string_view time) {
  const auto characters = CharactersOf(time);
  const std::ptrdiff_t count = std::ssize(characters);
  return FindSeparator(characters, {count - 3, count - 2, count - 4});
}

std::string WithSeparator(std::string_view text, std::string_view present, std::string_view wanted) {
  return present == wanted ? std::string{text} : ReplaceAll(text, present, wanted);
}

}  // namespace

std::string TrimAtTerminator(std::string_view sText) {
  sText = sText.substr(0, sText.find('\r'));
  return std::string{sText.substr(0, sText.find('\0'))};
}

std::int16_t DetectDateTimeSeparators(std::string_view present) {
  const auto parts = Split(present, " ");
  const bool has_date = DateSeparatorOf(parts[0]) == kDateSeparator;
  const bool has_time = parts.size() > 1 && TimeSeparatorOf(parts[1]) == kTimeSeparator;
  return static_cast<std::int16_t>((has_date ? 1 : 0) + (has_time ? 2 : 0));
}

std::string NormalizeDateSeparator(std::string_view sDate) {
  return WithSeparator(sDate, DateSeparatorOf(sDate), kDateSeparator);
}

std::string NormalizeTimeSeparator(std::string_view sTime) {
  return WithSeparator(sTime, TimeSeparatorOf(sTime), kTimeSeparator);
}

std::string TrimSpaceFromPathOne(std::string_view sPath) {
  const auto blank = sPath.find(" \\");
  if (blank == std::string_view::npos) return std::string{Trim(sPath)};
  return std::string{Trim(std::string{Trim(sPath.substr(0, blank))}.append(Trim(sPath.substr(blank + 1))))};
}

}  // namespace ondura
