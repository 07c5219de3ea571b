#pragma once

#include <string>
#include <string_view>

#include "platform/machine.h"
#include "profile/Installation.h"
#include "util/TextFiles.h"
#include "util/TraceSink.h"

namespace ondura {

// The bare name of the trace, in a user's folder and in the data folder.
inline constexpr std::string_view kScheduleTraceFile = "ScheduleTraceFile.txt";

// The trace files. A line is written as it comes, and the file is closed after it, so that a crash loses
// nothing and a grown file can be deleted between two lines. A line that can't be written is lost.
class Options : public TraceSink {
 public:
  Options(const Machine& machine, const Installation& installation)
      : text_files_(machine.files, machine.code_page), installation_(installation) {}

  // The current user's ScheduleTraceFile.txt.
  void WriteTrace(std::string_view TraceMsg) override;

  // ScheduleTraceFile.txt of the data folder.
  void WriteTraceMain(std::string_view TraceMsg) override;

  // The same as WriteTrace.
  void WriteTraceFile(std::string_view TraceMsg);

  // ScheduleTraceFileService.txt of the data folder.
  void WriteTraceService(std::string_view TraceMsg);

  // Appends `sentry` and one LF in the system code page to any file.
  void Writeintofile(std::string_view sFilepath, std::string_view sentry);

 private:
  void WriteUnicodeLine(const std::string& path, std::string_view line);

  TextFiles text_files_;
  const Installation& installation_;
};

}  // namespace ondura
