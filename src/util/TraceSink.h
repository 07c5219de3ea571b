#pragma once

#include <string_view>

namespace ondura {

// Where Programs and MachineFacts put their trace lines; the trace writer is in a higher layer.
class TraceSink {
 public:
  virtual ~TraceSink() = default;

  // A line in the current user's trace.
  virtual void WriteTrace(std::string_view TraceMsg) = 0;

  // A line in the trace of the data folder.
  virtual void WriteTraceMain(std::string_view TraceMsg) = 0;
};

}  // namespace ondura
