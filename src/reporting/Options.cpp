#include "reporting/Options.h"

namespace ondura {

namespace {

constexpr std::string_view kServiceTraceFile = "ScheduleTraceFileService.txt";

}  // namespace

void Options::WriteTrace(std::string_view TraceMsg) {
  WriteUnicodeLine(installation_.UserFile(kScheduleTraceFile), TraceMsg);
}

void Options::WriteTraceMain(std::string_view TraceMsg) {
  WriteUnicodeLine(installation_.DataFile(kScheduleTraceFile), TraceMsg);
}

void Options::WriteTraceFile(std::string_view TraceMsg) { WriteTrace(TraceMsg); }

void Options::WriteTraceService(std::string_view TraceMsg) {
  WriteUnicodeLine(installation_.DataFile(kServiceTraceFile), TraceMsg);
}

void Options::Writeintofile(std::string_view sFilepath, std::string_view sentry) {
  text_files_.Append(sFilepath, std::string{sentry} + "\n", Encoding::kCodePage, IfMissing::kCreate);
}

void Options::WriteUnicodeLine(const std::string& path, std::string_view line) {
  text_files_.Append(path, std::string{line} + std::string{kLineEnd}, Encoding::kUtf16, IfMissing::kCreate);
}

}  // namespace ondura
