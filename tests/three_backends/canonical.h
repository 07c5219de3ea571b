#pragma once

#include <string>

#include "platform/machine.h"

namespace ondura::scenario {

// Every file under `folder`, which ends in a backslash, as text: names in order, ini files with their keys in
// order, UTF-16 shown as UTF-8, and what differs from run to run - times, durations, process numbers - by its
// kind. A day is told from `today`, so that the next occurrence stays comparable.
std::string CanonicalFiles(const Machine& machine, const std::string& folder, LocalTime today);

}  // namespace ondura::scenario
