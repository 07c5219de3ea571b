#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace ondura::check {

struct CheckRequest {
  std::string engine;
  std::string store;
  std::vector<std::string> only;
  bool large = false;
  bool list = false;
  bool keep = false;
  bool as_json = false;
};

// How a run of the kit ended.
struct CheckEnd {
  int exit_code = 0;    // 1 for a failure, 2 for a request that can't be served
  std::string message;  // unless the exit code is 0
};

// What a person can ask for. `request` outlives the command.
void AddCheckOptions(CLI::App& command, CheckRequest& request);

// Prints a line a check, or one JSON array.
CheckEnd RunChecks(const CheckRequest& request);

}  // namespace ondura::check
