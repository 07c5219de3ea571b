#pragma once

#include <string>

namespace ondura {

// Reads a line from standard input. Throws Failure (kUsage) when it has ended.
std::string ReadInputLine(const std::string& what);

// Asks at the terminal without showing what is typed. Throws Failure (kUsage), saying `how_else` it can be
// given, if standard input is not a terminal.
std::string AskSecret(const std::string& question, const std::string& how_else);

}  // namespace ondura
