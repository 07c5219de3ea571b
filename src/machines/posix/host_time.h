#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <ctime>

#include "platform/local_time.h"

namespace ondura {

timespec ToTimespec(std::chrono::nanoseconds duration);

std::chrono::nanoseconds ToNanoseconds(const timespec& time);

// A point of the steady clock that signals and clock changes do not move.
class Deadline {
 public:
  explicit Deadline(std::chrono::nanoseconds from_now);

  // Nothing or less once it has passed.
  [[nodiscard]] std::chrono::nanoseconds Left() const;

  void SleepUntil() const;

 private:
  std::chrono::nanoseconds at_;
};

// Turns the host's seconds since 1970 into local time. It remembers the zone's offset for each day on which
// it does not change, since the C library's conversion is dear next to a directory walk.
class LocalZone {
 public:
  LocalZone();

  LocalTime ToLocal(std::time_t seconds);

  LocalTime Now();

  // How far the zone is ahead of UTC at a local time.
  static std::chrono::minutes OffsetOf(LocalTime local);

 private:
  struct Day {
    std::int64_t number = INT64_MIN;
    std::int32_t offset_seconds = 0;
  };

  std::array<Day, 1024> days_;
};

}  // namespace ondura
