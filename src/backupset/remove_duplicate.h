#pragma once

#include <string>
#include <vector>

#include "platform/machine.h"

namespace ondura {

// Cleans a list of paths, letter case aside: what begins with another entry that is not a file goes, and so
// does what equals an entry that is a file once both are trimmed. Of two that are the same the first stays;
// the rest keep their order. Pauses now and then, so that a long list leaves the machine to others.
void RemoveDuplicate(const Machine& machine, std::vector<std::string>& list);

}  // namespace ondura
