#include "reporting/stage_log.h"

#include <array>
#include <string>

#include "util/TextFiles.h"
#include "util/date_text.h"

namespace ondura {

namespace {

// All of one width, so that the lines stand below each other.
constexpr std::array<std::string_view, 3> kSeverities{
    "Information : [",
    "Success     : [",
    "Error       : [",
};

}  // namespace

void WriteStageLogLine(const Machine& machine, std::string_view sFilepath, std::string_view TraceMsg,
                       int nKind) {
  std::string line;
  if (nKind >= kStageInformation && nKind <= kStageError) {
    line.append(kSeverities[static_cast<std::size_t>(nKind)])
        .append(FormatDate("mm-dd-yyyy hh:mm:ss", machine.clock.Now()))
        .append(" : ] ")
        .append(TraceMsg);
  }
  TextFiles text_files{machine.files, machine.code_page};
  text_files.Append(sFilepath, line.append(kLineEnd), Encoding::kCodePage, IfMissing::kCreate);
}

}  // namespace ondura
