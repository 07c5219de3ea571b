#include "engine/engine_command.h"

#include <algorithm>

#include "text/text.h"

namespace ondura {

std::string NumberOf(EngineCommand command) { return std::to_string(static_cast<int>(command)); }

std::string EngineParameters(EngineCommand command, std::string_view argument) {
  return EngineParameters(command) + "<" + std::string{argument} + ">";
}

std::string EngineParameters(EngineCommand command) { return " " + NumberOf(command); }

std::optional<EngineCall> ParseEngineCall(std::string_view text) {
  text = Trim(text);
  const auto open = text.find('<');
  const auto number = ParseInt16(text.substr(0, open));
  if (!number) return std::nullopt;
  const auto command = static_cast<EngineCommand>(*number);
  if (std::ranges::find(kEngineCommands, command) == kEngineCommands.end()) return std::nullopt;
  if (open == std::string_view::npos) return EngineCall{command, {}};
  if (text.back() != '>') return std::nullopt;
  return EngineCall{command, std::string{text.substr(open + 1, text.size() - open - 2)}};
}

}  // namespace ondura
