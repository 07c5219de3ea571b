#include "engine/status_word.h"

#include <algorithm>
#include <array>

namespace ondura {

namespace {

struct WordText {
  StatusWord word;
  std::string_view text;
};

constexpr std::array kTexts = {
    WordText{StatusWord::kIdle, "0"},        WordText{StatusWord::kStarting, "1"},
    WordText{StatusWord::kInteractive, "2"}, WordText{StatusWord::kFailed, "3"},
    WordText{StatusWord::kClosedUp, "4"},    WordText{StatusWord::kStopAsked, "5"},
    WordText{StatusWord::kCutOff, "10"},
};

}  // namespace

std::string_view TextOf(StatusWord word) { return std::ranges::find(kTexts, word, &WordText::word)->text; }

std::optional<StatusWord> StatusWordOf(std::string_view text) {
  const auto found = std::ranges::find(kTexts, text, &WordText::text);
  if (found == kTexts.end()) return std::nullopt;
  return found->word;
}

}  // namespace ondura
