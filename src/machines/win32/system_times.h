#pragma once

#include <cstdint>

#include "machines/win32/windows_api.h"
#include "platform/local_time.h"

namespace ondura {

LocalTime ToLocalTime(const SYSTEMTIME& time);

// By the rules of the zone at that moment: a file of the summer keeps its hour in winter.
LocalTime ToLocalTime(const FILETIME& time);

// How far the zone is ahead of UTC at a local time; 0 where the system can't say.
std::chrono::minutes UtcOffsetOf(LocalTime local);

// Units of 100 ns.
inline std::uint64_t Ticks(const FILETIME& time) {
  return (static_cast<std::uint64_t>(time.dwHighDateTime) << 32U) | time.dwLowDateTime;
}

}  // namespace ondura
