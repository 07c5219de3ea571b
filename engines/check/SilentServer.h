#pragma once

#include <cstdint>

namespace ondura::check {

// A server on this computer that takes every connection and never says a word.
class SilentServer {
 public:
  // Throws std::runtime_error if it can't listen.
  SilentServer();
  ~SilentServer();
  SilentServer(const SilentServer&) = delete;
  SilentServer& operator=(const SilentServer&) = delete;

  [[nodiscard]] std::uint16_t port() const { return port_; }

 private:
  std::intptr_t listener_ = -1;
  std::uint16_t port_ = 0;
};

}  // namespace ondura::check
