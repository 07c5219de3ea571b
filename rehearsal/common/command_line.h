#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ondura::rehearsal {

// One command of the component: " 51<\9_05_07_57>", or " 17" without brackets.
struct EngineCommand {
  int number = 0;
  std::string argument;
};

// The words of a command line as one text again. The argument is never quoted, so that a folder with
// blanks in it arrives in several words.
std::string JoinWords(int count, const char* const* words);

// Nothing for a text that is no command.
std::optional<EngineCommand> ParseEngineCommand(std::string_view text);

}  // namespace ondura::rehearsal
