#pragma once

#include <string>
#include <string_view>

#include "platform/machine.h"
#include "profile/Installation.h"

namespace ondura {

class Transfer;

inline constexpr std::string_view kBackupProgressFile = "BackupProgress.ini";
inline constexpr std::string_view kBackupProgressSection = "BackupProgressInfo";

// BackupProgress.ini, which the engine fills and the tray shows, and the flags of the progress display.
class Progress {
 public:
  Progress(const Machine& machine, const Installation& installation, const Transfer& transfer)
      : machine_(machine), installation_(installation), transfer_(transfer) {}

  // Clears the file, so that a run that is over leaves nothing on the screen.
  void ResetBackupProgressIni();

  // Ends the progress display, and with it the running job at its next stop test. Always true.
  bool EndProgress();

  // The job's stop flag.
  [[nodiscard]] const bool& ProgressEnded() const { return progress_ended_; }
  [[nodiscard]] bool ProgressRunning() const { return progress_running_; }

  // Before a job: no end has been asked for yet.
  void ClearProgressEnded() { progress_ended_ = false; }

  // For whoever shows progress.
  void MarkProgressRunning() { progress_running_ = true; }

  // A transfer is over or cancelled: window state and flag go to "0".
  void WriteTransferOver();

  // Status of the progress window := "0".
  void WriteWindowStatusReset();

  // A byte count as "1.5 KB": one decimal, cut, with the user's decimal separator. Exactly 1024 gives "0.0"
  // and no unit.
  std::string GetProperSizeValue(double nBytes);

 private:
  void Write(std::string_view section, std::string_view key, std::string_view value);

  Machine machine_;
  const Installation& installation_;
  const Transfer& transfer_;
  bool progress_running_ = false;
  bool progress_ended_ = false;
};

}  // namespace ondura
