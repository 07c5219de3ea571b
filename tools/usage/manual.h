#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace ondura {

// The manual page of a program, made from what its --help says, in the man macros of roff.
std::string ManualPage(const CLI::App& app, const std::string& version);

}  // namespace ondura
