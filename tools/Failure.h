#pragma once

#include <stdexcept>
#include <string>

namespace ondura {

// How the program ends. kFailed: what was asked for isn't there or could not be done. kUsage: the command
// was called wrongly, or the folder holds no machine.
enum class Exit { kDone = 0, kFailed = 1, kUsage = 2 };

// Ends the command. The text is one sentence that also says what to do.
class Failure : public std::runtime_error {
 public:
  Failure(Exit exit, const std::string& text) : std::runtime_error(text), exit_(exit) {}

  [[nodiscard]] Exit exit() const { return exit_; }

 private:
  Exit exit_;
};

}  // namespace ondura
