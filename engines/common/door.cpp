#include "engines/common/door.h"

namespace ondura::engines {

std::optional<DoorCall> ParseDoorCall(const std::vector<std::string>& words) {
  constexpr std::size_t kFixedWords = 3;
  if (words.size() < kFixedWords || words[0] != kDoorOption) return std::nullopt;
  DoorCall call{words[1], words[2], {}, {}};
  for (std::size_t at = kFixedWords; at < words.size(); ++at) {
    const std::string& word = words[at];
    if (!word.starts_with("--")) {
      call.words.push_back(word);
    } else if (word.ends_with('=')) {
      call.options[word.substr(2, word.size() - 3)] = "";
    } else if (at + 1 < words.size()) {
      call.options[word.substr(2)] = words[++at];
    } else {
      return std::nullopt;
    }
  }
  return call;
}

}  // namespace ondura::engines
