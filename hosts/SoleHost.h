#pragma once

#include <string>
#include <string_view>

#include "platform/machine.h"

namespace ondura {

// The place of the one host of its kind on a machine, held for as long as this object lives. Two services, or
// the twins of two sessions, would each take the other's job for one that was cut off and run it again.
//
// The place is a mutex that all sessions of the machine see and that goes with its process, however that
// ends. Where the mutex can't even be opened, as with one that another account has made, the place is taken
// when a second process of the host's program is in the process table.
class SoleHost {
 public:
  // `product` is the installed product's name, `kind` such as "service", `program` the base name of the
  // host's own executable.
  SoleHost(const Machine& machine, std::string_view product, std::string_view kind, std::string_view program);
  ~SoleHost();
  SoleHost(const SoleHost&) = delete;
  SoleHost& operator=(const SoleHost&) = delete;

  // Empty when the place is this host's; otherwise why it has to leave, for a person to read.
  [[nodiscard]] const std::string& refusal() const { return refusal_; }

 private:
  NamedMutexes& mutexes_;
  MutexHandle mutex_;
  std::string refusal_;
};

}  // namespace ondura
