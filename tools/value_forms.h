#pragma once

#include <string>

#include "profile/profile_keys.h"

namespace ondura {

// The value as the key keeps it: "no" becomes the key's own word for off. An empty value empties the key and
// is always right. Throws Failure (kUsage) with the allowed values for one that the system would misread.
// Keys without a known form take anything.
std::string FittingValue(const ProfileKey& key, const std::string& value);

}  // namespace ondura
