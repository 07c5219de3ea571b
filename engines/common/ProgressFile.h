#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "engines/common/Client.h"

namespace ondura::engines {

struct TransferFigures {
  std::uint64_t files = 0;
  std::uint64_t bytes = 0;
};

// BackupProgress.ini, which the tray and the user interface show while the engine runs.
class ProgressFile {
 public:
  explicit ProgressFile(Client& client);

  void Begin(const TransferFigures& total);

  // The file that is on its way now, and what has been done before it.
  void Show(std::string_view path, const TransferFigures& done);

  // The progress of a run that reports it itself, about once a second. `path` is on its way now; empty for
  // none. A run shows at most 99 percent: it is done when it says so.
  void ShowRun(std::string_view path, const TransferFigures& done, const TransferFigures& total);

  // The last file has been dealt with.
  void Finish(const TransferFigures& done);

  void End();

 private:
  void ShowFigures(const TransferFigures& done, std::uint64_t percent);
  void Write(std::string_view key, std::string_view value);

  Client& client_;
  std::string path_;
  LocalTime start_;
  TransferFigures total_;
  std::uint64_t next_shown_ = 0;
};

}  // namespace ondura::engines
