#pragma once

#include <string_view>

#include "platform/machine.h"

namespace ondura {

// Severities of a stage log line.
inline constexpr int kStageInformation = 0;
inline constexpr int kStageSuccess = 1;
inline constexpr int kStageError = 2;

// Appends one line with severity and time to a stage's log, in the system code page; makes the file when
// it is missing. Any other `nKind` writes an empty line. A line that can't be written is lost.
void WriteStageLogLine(const Machine& machine, std::string_view sFilepath, std::string_view TraceMsg,
                       int nKind);

}  // namespace ondura
