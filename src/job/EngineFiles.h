#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "job/JobContext.h"

namespace ondura {

// The proxy values of DLLInput.txt, in the order of its lines.
struct EngineFileProxy {
  std::int32_t proxyexistsflag = 0;
  std::int32_t proxytype = 0;
  std::string proxyserverip;
  std::string proxyserverport;
  std::string proxyserveruname;
  std::string proxyserverpwd;
};

// The answer in DLLOutput.txt or DLLOutputInfo.txt.
struct EngineFileResult {
  bool bResult = false;
  // Missing where nothing was read: the caller's own value then stays.
  std::optional<std::int32_t> lValue;
  std::optional<std::string> strDescrip;
};

// The older file interface, kept for the host and for an engine that takes its settings from a file. No step
// of the job uses it.
class EngineFiles {
 public:
  explicit EngineFiles(JobContext& job);

  // Deletes DLLInput.txt in the temp folder, then appends to it without making it: nothing is left behind
  // unless another program makes the file in between.
  void WriteDLLInputFileTempFd(const EngineFileProxy& proxy, std::string_view AsciiRandom);

  // Line 1 of DLLOutput.txt, in the temp folder or the user folder. True when the file is there, also when
  // it is empty.
  EngineFileResult ResdDLLOutputFileTempFd();
  EngineFileResult ResdDLLOutputFile();

  // True when the user's job is starting or running.
  bool ReadScheduleStatusFile();

  // The port := the default port.
  void CallIPPORTCheckFull();

  // Fills the list of ports.
  void Trf_WritePORTNumbers(std::int32_t nCount);

 private:
  EngineFileResult ReadResult(const std::string& path);

  JobContext& job_;
  TextFiles text_files_;
};

// The number on line 1 and the text on line 2 of a result file.
EngineFileResult ReadEngineResultFile(TextFiles& text_files, const std::string& path);

}  // namespace ondura
