#include "machines/posix/host_time.h"

#include <cerrno>

namespace ondura {

namespace {

constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;
constexpr std::int64_t kSecondsPerDay = 86'400;

timespec TimeOf(clockid_t clock) {
  timespec now{};
  clock_gettime(clock, &now);
  return now;
}

std::int32_t OffsetAt(std::time_t seconds) {
  std::tm fields{};
  return localtime_r(&seconds, &fields) == nullptr ? 0 : static_cast<std::int32_t>(fields.tm_gmtoff);
}

std::int64_t DayOf(std::time_t seconds) {
  return std::chrono::floor<std::chrono::days>(std::chrono::seconds{seconds}).count();
}

}  // namespace

timespec ToTimespec(std::chrono::nanoseconds duration) {
  return {static_cast<std::time_t>(duration.count() / kNanosecondsPerSecond),
          static_cast<long>(duration.count() % kNanosecondsPerSecond)};
}

std::chrono::nanoseconds ToNanoseconds(const timespec& time) {
  return std::chrono::nanoseconds{static_cast<std::int64_t>(time.tv_sec) * kNanosecondsPerSecond +
                                  time.tv_nsec};
}

Deadline::Deadline(std::chrono::nanoseconds from_now)
    : at_(ToNanoseconds(TimeOf(CLOCK_MONOTONIC)) + from_now) {}

std::chrono::nanoseconds Deadline::Left() const { return at_ - ToNanoseconds(TimeOf(CLOCK_MONOTONIC)); }

void Deadline::SleepUntil() const {
  const timespec at = ToTimespec(at_);
  while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &at, nullptr) == EINTR) {
  }
}

LocalZone::LocalZone() { tzset(); }

LocalTime LocalZone::ToLocal(std::time_t seconds) {
  const std::int64_t number = DayOf(seconds);
  Day& day = days_[static_cast<std::uint64_t>(number) % days_.size()];
  if (day.number != number) {
    const std::time_t start = number * kSecondsPerDay;
    const std::int32_t offset = OffsetAt(start);
    if (OffsetAt(start + kSecondsPerDay - 1) != offset) {
      return LocalTime{std::chrono::seconds{seconds + OffsetAt(seconds)}};
    }
    day = {number, offset};
  }
  return LocalTime{std::chrono::seconds{seconds + day.offset_seconds}};
}

std::chrono::minutes LocalZone::OffsetOf(LocalTime local) {
  const TimeFields time = ToFields(local);
  std::tm fields{};
  fields.tm_year = time.year - 1900;
  fields.tm_mon = time.month - 1;
  fields.tm_mday = time.day;
  fields.tm_hour = time.hour;
  fields.tm_min = time.minute;
  fields.tm_sec = time.second;
  fields.tm_isdst = -1;
  const std::time_t universal = mktime(&fields);
  return std::chrono::duration_cast<std::chrono::minutes>(std::chrono::seconds{OffsetAt(universal)});
}

LocalTime LocalZone::Now() { return ToLocal(TimeOf(CLOCK_REALTIME).tv_sec); }

}  // namespace ondura
