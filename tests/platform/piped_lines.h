#pragma once

#include <string>
#include <vector>

#include "platform/PipedProgram.h"

namespace ondura {

// All that the program prints, errors after "!", and its exit code.
inline std::vector<std::string> RunToEnd(PipedProgram& program) {
  std::vector<std::string> lines;
  for (int looks = 0; looks < 100; ++looks) {
    while (const auto line = program.NextLine(std::chrono::milliseconds{100})) {
      lines.push_back((line->stream == PipeStream::kError ? "!" : "") + line->text);
    }
    if (const auto code = program.ExitCode()) {
      lines.push_back("= " + std::to_string(*code));
      break;
    }
  }
  return lines;
}

}  // namespace ondura
