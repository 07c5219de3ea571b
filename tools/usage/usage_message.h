#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace ondura {

// What is wrong with a command line that the parser refused, and what was probably meant, in one sentence.
std::string UsageMessage(const CLI::App& app, const CLI::ParseError& error,
                         const std::vector<std::string>& words);

}  // namespace ondura
