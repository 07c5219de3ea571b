#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "tick_options.h"

namespace ondura {

// Why a host leaves, in a sentence that says what to do, and with which code.
class HostError : public std::runtime_error {
 public:
  explicit HostError(const std::string& message, int exit_code = kExitFailure)
      : std::runtime_error(message), exit_code_(exit_code) {}

  [[nodiscard]] int exit_code() const { return exit_code_; }

 private:
  int exit_code_;
};

// The platform's text for an error code or HRESULT, with the code after it.
std::string SystemText(unsigned long code);

// `what` and the text of GetLastError.
[[noreturn]] void ThrowLastError(std::string_view what);

}  // namespace ondura
