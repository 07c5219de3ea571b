#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <string_view>

#include "HostNotes.h"
#include "platform/machine.h"
#include "profile/Installation.h"
#include "reporting/Options.h"

namespace ondura {

// A clock further ahead than this is rather wrong than that so much time has passed.
inline constexpr std::chrono::days kBelievedAhead{366};

// Looks before each pass whether it could do harm: a job without an engine never ends, and a pass under a
// clock that is wrong by years moves every record to where nobody finds it again.
class TickGuard {
 public:
  using Say = std::function<void(std::string_view)>;  // to the person at the host or its event log

  // `machine` and `installation` outlive the guard.
  TickGuard(const Machine& machine, const Installation& installation, Say say)
      : machine_(machine),
        installation_(installation),
        trace_(machine, installation),
        notes_(machine, installation),
        say_(std::move(say)) {}

  // False while a pass has to wait; `since_last` is the time since the last question. What is waited for is
  // said once, and a wrong clock once an hour. The wait for a clock that is ahead by ten years at most ends
  // after a day, that for one that went back after an hour: a machine may have been off for so long.
  [[nodiscard]] bool MayTick(std::chrono::milliseconds since_last);

 private:
  enum class Fault { kNone, kClockAhead, kClockBehind, kEngineMissing, kEngineRefused };

  Fault FindFault(LocalTime now);
  Fault ClockFault(LocalTime now);
  std::string Reason(Fault fault, LocalTime now) const;
  void Hold(Fault fault, LocalTime now);
  void GoOn(LocalTime now);
  void Tell(std::string_view text, LocalTime now);

  const Machine& machine_;
  const Installation& installation_;
  Options trace_;
  HostNotes notes_;
  Say say_;
  Fault fault_ = Fault::kNone;
  std::chrono::milliseconds waited_{};
  std::chrono::milliseconds said_at_{};
};

}  // namespace ondura
