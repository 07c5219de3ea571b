#include "secret_input.h"

#include <termios.h>
#include <unistd.h>

#include <iostream>

#include "Failure.h"

namespace ondura {

namespace {

// Turns the echo of the terminal off for as long as it lives.
class SilentTerminal {
 public:
  SilentTerminal() {
    if (tcgetattr(STDIN_FILENO, &before_) != 0) return;
    termios silent = before_;
    silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    changed_ = tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent) == 0;
  }
  ~SilentTerminal() {
    if (changed_) tcsetattr(STDIN_FILENO, TCSAFLUSH, &before_);
  }
  SilentTerminal(const SilentTerminal&) = delete;
  SilentTerminal& operator=(const SilentTerminal&) = delete;

 private:
  termios before_{};
  bool changed_ = false;
};

}  // namespace

std::string ReadInputLine(const std::string& what) {
  std::string line;
  if (!std::getline(std::cin, line)) {
    throw Failure(Exit::kUsage, "standard input ended before " + what + "; give it as one line");
  }
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return line;
}

std::string AskSecret(const std::string& question, const std::string& how_else) {
  if (isatty(STDIN_FILENO) == 0)
    throw Failure(Exit::kUsage, "nobody is there to ask for a password; " + how_else);
  std::cerr << question << ": ";
  std::string answer;
  {
    const SilentTerminal silent;
    answer = ReadInputLine("the password");
  }
  std::cerr << "\n";
  return answer;
}

}  // namespace ondura
