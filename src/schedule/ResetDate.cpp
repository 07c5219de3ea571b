#include "schedule/ResetDate.h"

#include <tuple>

#include "text/text.h"

namespace ondura {

namespace {

constexpr std::chrono::days kDaysBetweenResets{7};

}  // namespace

bool ResetDate::IsSet() { return !Trim(store_.ReadProfileValue(profile_keys::kResetDay)).empty(); }

bool ResetDate::bCheckDate() {
  const TimeFields today = ToFields(clock_.Now());
  const std::tuple stored{Part(profile_keys::kResetYear, today.year),
                          Part(profile_keys::kResetMonth, today.month),
                          Part(profile_keys::kResetDay, today.day)};
  return stored <= std::tuple<std::int64_t, std::int64_t, std::int64_t>{today.year, today.month, today.day};
}

std::int64_t ResetDate::Part(const ProfileKey& key, int todays) {
  return ParseInteger(store_.ReadProfileValue(key)).value_or(todays);
}

void ResetDate::SetNext() {
  const TimeFields next = ToFields(clock_.Now() + kDaysBetweenResets);
  transfer_.Trf_WriteUserProfileDefault(profile_keys::kResetDay, std::to_string(next.day));
  transfer_.Trf_WriteUserProfileDefault(profile_keys::kResetMonth, std::to_string(next.month));
  transfer_.Trf_WriteUserProfileDefault(profile_keys::kResetYear, std::to_string(next.year));
}

}  // namespace ondura
