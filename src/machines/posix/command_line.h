#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ondura {

// The arguments of a parameter text as the C runtime on Windows splits it: blanks and tabs part arguments
// but not within double quotes; backslashes count only in front of a quote, where each pair is one backslash
// and an odd one makes the quote a character; two quotes within quotes are one quote character.
std::vector<std::string> SplitCommandLine(std::string_view parameters);

}  // namespace ondura
