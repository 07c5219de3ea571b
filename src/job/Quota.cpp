#include "job/Quota.h"

#include "text/text.h"

namespace ondura {

namespace {

constexpr double kGigabyte = 1073741824;

}  // namespace

Quota ReadQuotaOutputFile(ProfileStore& store) {
  Quota quota;
  quota.used = ParseNumber(store.ReadProfileValue(profile_keys::kQuotaUsed)).value_or(quota.used);
  const std::string max = store.ReadProfileValue(profile_keys::kQuotaMax);
  quota.max = Trim(max) == "1" ? quota.used + kGigabyte : ParseNumber(max).value_or(quota.max);
  return quota;
}

std::string QuotaTrace(const Quota& quota) {
  return "Used Quota : " + NumberText(quota.used) + ", Max Quota: " + NumberText(quota.max);
}

}  // namespace ondura
