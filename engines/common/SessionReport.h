#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "engine/engine_results.h"
#include "engines/common/Client.h"

namespace ondura::engines {

struct RunFigures {
  std::uint64_t considered = 0;
  std::uint64_t in_sync = 0;
  std::uint64_t sent = 0;
  std::uint64_t sent_bytes = 0;
  std::uint64_t failed = 0;
};

// The engine's own session log: a heading, one line a file, the figures and a closing line. The mail takes
// its subject from the closing line, from the "[" on, and looks for it among the last lines. Lines are
// written at least once a second: an engine that is killed leaves the files that it has sent.
class SessionReport {
 public:
  explicit SessionReport(Client& client);

  void Sent(std::string_view path, std::uint64_t size_bytes);
  void Failed(std::string_view path);

  // A sentence of its own.
  void Say(std::string_view message);

  void Close(EngineResult result, const RunFigures& figures);

 private:
  void Line(std::string_view text);
  void Stamped(std::string_view text);
  void Flush();

  Client& client_;
  LocalTime start_;
  std::string path_;
  std::string held_;  // lines of the second that was last written in
  LocalTime written_at_{};
};

}  // namespace ondura::engines
