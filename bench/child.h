#pragma once

#include <optional>
#include <string>
#include <vector>

namespace ondura {

struct ChildRun {
  int exit_code = -1;  // -1 when it could not be started or was killed
  double seconds = 0;
  std::string output;
};

// Runs a program to its end. Its standard output goes to `output_file`, or into the result where that is
// empty; its errors go nowhere.
ChildRun RunChild(const std::vector<std::string>& command, const std::string& output_file = {});

// The present program's own file.
std::string OwnPath();

// The largest memory that this process has held so far, in bytes.
std::optional<double> PeakMemory();

}  // namespace ondura
