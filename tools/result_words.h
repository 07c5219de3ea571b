#pragma once

#include <string>

namespace ondura {

// What a result of the engine means, such as "done" for 402. A number of no known meaning says so.
std::string ResultWords(int result);

}  // namespace ondura
