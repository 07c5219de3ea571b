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

}  // namespace ondura
