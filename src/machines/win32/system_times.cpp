#include "machines/win32/system_times.h"

namespace ondura {

LocalTime ToLocalTime(const SYSTEMTIME& time) {
  return ToLocalTime(TimeFields{time.wYear, time.wMonth, time.wDay, time.wHour, time.wMinute, time.wSecond});
}

LocalTime ToLocalTime(const FILETIME& time) {
  SYSTEMTIME universal{};
  SYSTEMTIME local{};
  if (!FileTimeToSystemTime(&time, &universal) ||
      !SystemTimeToTzSpecificLocalTime(nullptr, &universal, &local)) {
    return {};
  }
  return ToLocalTime(local);
}

std::chrono::minutes UtcOffsetOf(LocalTime local) {
  const TimeFields fields = ToFields(local);
  SYSTEMTIME time{};
  time.wYear = static_cast<WORD>(fields.year);
  time.wMonth = static_cast<WORD>(fields.month);
  time.wDay = static_cast<WORD>(fields.day);
  time.wHour = static_cast<WORD>(fields.hour);
  time.wMinute = static_cast<WORD>(fields.minute);
  time.wSecond = static_cast<WORD>(fields.second);
  SYSTEMTIME universal{};
  if (!TzSpecificLocalTimeToSystemTime(nullptr, &time, &universal)) return {};
  return std::chrono::duration_cast<std::chrono::minutes>(local - ToLocalTime(universal));
}

}  // namespace ondura
