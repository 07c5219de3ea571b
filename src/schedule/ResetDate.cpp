#include "schedule/ResetDate.h"

#include <tuple>

#include "text/text.h"

namespace ondura {

namespace {

constexpr std::string_view kSection = "Tolmera";
constexpr std::string_view kDay = "TrayIconDay";
constexpr std::string_view kMonth = "TrayIconMonth";
constexpr std::string_view kYear = "TrayIconYear";

constexpr std::chrono::days kDaysBetweenResets{7};

}  // namespace

bool ResetDate::IsSet() { return !Trim(store_.ReadProfileValue(kSection, kDay)).empty(); }

bool ResetDate::bCheckDate() {
  const TimeFields today = ToFields(clock_.Now());
  const std::tuple stored{Part(kYear, today.year), Part(kMonth, today.month), Part(kDay, today.day)};
  return stored <= std::tuple<std::int64_t, std::int64_t, std::int64_t>{today.year, today.month, today.day};
}

std::int64_t ResetDate::Part(std::string_view key, int todays) {
  return ParseInteger(store_.ReadProfileValue(kSection, key)).value_or(todays);
}

void ResetDate::SetNext() {
  const TimeFields next = ToFields(clock_.Now() + kDaysBetweenResets);
  transfer_.Trf_WriteUserProfileDefault(kSection, kDay, std::to_string(next.day));
  transfer_.Trf_WriteUserProfileDefault(kSection, kMonth, std::to_string(next.month));
  transfer_.Trf_WriteUserProfileDefault(kSection, kYear, std::to_string(next.year));
}

}  // namespace ondura
