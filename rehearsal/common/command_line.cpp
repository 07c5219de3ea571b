#include "rehearsal/common/command_line.h"

#include "text/text.h"

namespace ondura::rehearsal {

std::string JoinWords(int count, const char* const* words) {
  std::string text;
  for (int at = 1; at < count; ++at) {
    if (at > 1) text += ' ';
    text += words[at];
  }
  return text;
}

std::optional<EngineCommand> ParseEngineCommand(std::string_view text) {
  text = Trim(text);
  const auto open = text.find('<');
  const auto number = ParseInt16(text.substr(0, open));
  if (!number || *number <= 0) return std::nullopt;
  if (open == std::string_view::npos) return EngineCommand{*number, {}};
  if (text.back() != '>') return std::nullopt;
  return EngineCommand{*number, std::string{text.substr(open + 1, text.size() - open - 2)}};
}

}  // namespace ondura::rehearsal
