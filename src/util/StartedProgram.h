#pragma once

#include <string>
#include <string_view>

#include "util/Programs.h"
#include "util/waits.h"

namespace ondura {

// A program that was just started and is waited for by its name: what it starts itself under that name counts
// as well. A slow start takes its time until the process list shows it, so it counts as running from the
// start on, until it has been seen or its process has ended.
class StartedProgram {
 public:
  // A `process` that was not started leaves the list alone to decide.
  StartedProgram(Programs& programs, std::string_view name, ProcessWatch process)
      : programs_(programs), name_(name), process_(std::move(process)) {}

  bool IsRunning();

 private:
  Programs& programs_;
  std::string name_;
  ProcessWatch process_;
  bool is_to_appear_ = true;
};

}  // namespace ondura
