#pragma once

#include <string>

#include "engines/common/Store.h"

namespace ondura::engines {

// Does one command of the scanner and returns its exit code: "29" makes the local database for a job, "5"
// throws the old one away first. The keys of the scan in the profile say while it runs.
int RunScanner(Client& client, Store& store, const std::string& command_line);

}  // namespace ondura::engines
