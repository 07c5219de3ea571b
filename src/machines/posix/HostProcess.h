#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "machines/posix/host_io.h"

namespace ondura {

// One process of the host. It is held by a descriptor, which stays with this process when its number is
// given to another one.
class HostProcess {
 public:
  enum class Kinship { kChild, kStranger };

  // Not valid when there is no such process.
  HostProcess(pid_t id, Kinship kinship);

  [[nodiscard]] bool valid() const { return ended_ || handle_.valid(); }
  [[nodiscard]] pid_t id() const { return id_; }

  // Also takes an ended child out of the host's table.
  bool HasEnded();

  // False when `limit` of real time passed first.
  bool WaitForEnd(std::chrono::nanoseconds limit);

  // Its exit code once it has ended. For a process that this one did not start the host reports none: 0.
  [[nodiscard]] std::uint32_t exit_code() const { return exit_code_; }

  // False when it has ended already or may not be ended.
  bool Kill(std::uint32_t exit_code);

 private:
  void Collect();

  pid_t id_;
  Kinship kinship_;
  Fd handle_;
  bool ended_ = false;
  std::uint32_t exit_code_ = 0;
  std::optional<std::uint32_t> forced_code_;
};

// The file that the process runs; also after the file was replaced or deleted. std::nullopt for a process
// that has ended or may not be looked into.
std::optional<std::string> ExecutableOf(pid_t id);

// The name that the process was started by, which needs no right to look into it but is whatever its starter
// said. std::nullopt for a process that has ended.
std::optional<std::string> CommandOf(pid_t id);

}  // namespace ondura
