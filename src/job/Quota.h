#pragma once

#include <string>

#include "profile/ProfileStore.h"

namespace ondura {

// The storage quota as the engine left it in the profile, in bytes.
struct Quota {
  double used = -1;
  double max = 0;

  [[nodiscard]] bool IsExceeded() const { return used > max; }
};

// Section QuotaStatus. The marker "1" for the maximum means one gigabyte more than is used.
Quota ReadQuotaOutputFile(ProfileStore& store);

// "Used Quota : 12, Max Quota: 34".
std::string QuotaTrace(const Quota& quota);

}  // namespace ondura
