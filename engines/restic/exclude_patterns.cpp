#include "engines/restic/exclude_patterns.h"

namespace ondura::engines {

std::string ExactPattern(std::string_view path, bool escapes_by_backslash) {
  std::string pattern;
  for (const char character : path) {
    if (!escapes_by_backslash && character == '[') {
      pattern += "[[]";  // no name holds one of the others there, and a "]" alone ends nothing
      continue;
    }
    const bool is_special = std::string_view{"*?[]\\"}.find(character) != std::string_view::npos;
    if (escapes_by_backslash && is_special) pattern += '\\';
    pattern += character;
  }
  return pattern;
}

std::string ExcludeLine(std::string_view full_path, bool escapes_by_backslash) {
  if (full_path.find_first_of("\r\n") != std::string_view::npos) return {};
  std::string line;
  // The file may name variables of the environment by "$".
  for (const char character : ExactPattern(full_path, escapes_by_backslash))
    line.append(character == '$' ? "$$" : std::string{character});
  // Blanks at the end of a line are cut off.
  if (line.ends_with(' ')) line.replace(line.size() - 1, 1, "[ ]");
  return line;
}

}  // namespace ondura::engines
