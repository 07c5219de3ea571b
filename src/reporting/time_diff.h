#pragma once

#include <string>

#include "platform/local_time.h"

namespace ondura {

// How long a run took, in words with a leading blank: " 1 hour, 2 minutes and 3 seconds". Empty for equal
// times.
std::string TimeDiffString(LocalTime dtmStart, LocalTime dtmEnd);

}  // namespace ondura
