#pragma once

#include <string>
#include <string_view>

#include "platform/Clock.h"
#include "reporting/Trace.h"

namespace ondura {

// A line in the user's trace once in a minute of calls, for the waits of a job that trace nothing else. A
// fresh trace shows the other host that the job works without an engine and was not cut off.
class LifeSign {
 public:
  LifeSign(Trace& trace, Clock& clock, std::string_view text) : trace_(trace), clock_(clock), text_(text) {}

  // A wait begins: its first line is due in a minute.
  void Begin() { last_ = clock_.Now(); }

  // Costs no more than a look at the clock while no line is due.
  void Show();

 private:
  Trace& trace_;
  Clock& clock_;
  std::string text_;
  LocalTime last_;
};

}  // namespace ondura
