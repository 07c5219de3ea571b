#include "machines/posix/command_line.h"

#include <algorithm>

namespace ondura {

namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

class Splitter {
 public:
  explicit Splitter(std::string_view rest) : rest_(rest) {}

  bool SkipBlanks() {
    while (!rest_.empty() && IsBlank(rest_.front())) rest_.remove_prefix(1);
    return !rest_.empty();
  }

  std::string Next() {
    std::string argument;
    bool quoted = false;
    while (!rest_.empty() && (quoted || !IsBlank(rest_.front()))) {
      const std::size_t slashes = TakeBackslashes();
      const bool at_quote = rest_.starts_with('"');
      argument.append(at_quote ? slashes / 2 : slashes, '\\');
      if (at_quote) {
        TakeQuote(argument, quoted, slashes % 2 == 1);
      } else if (slashes == 0) {
        argument += rest_.front();
        rest_.remove_prefix(1);
      }
    }
    return argument;
  }

 private:
  std::size_t TakeBackslashes() {
    const std::size_t count = std::min(rest_.find_first_not_of('\\'), rest_.size());
    rest_.remove_prefix(count);
    return count;
  }

  void TakeQuote(std::string& argument, bool& quoted, bool escaped) {
    const bool doubled = quoted && rest_.starts_with("\"\"");
    if (escaped || doubled) {
      argument += '"';
    } else {
      quoted = !quoted;
    }
    rest_.remove_prefix(!escaped && doubled ? 2 : 1);
  }

  std::string_view rest_;
};

}  // namespace

std::vector<std::string> SplitCommandLine(std::string_view parameters) {
  std::vector<std::string> arguments;
  for (Splitter splitter{parameters}; splitter.SkipBlanks();) arguments.push_back(splitter.Next());
  return arguments;
}

}  // namespace ondura
