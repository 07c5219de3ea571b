#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/machine.h"

namespace ondura::rehearsal {

// The titles of the two dialog windows that the operating system's backup tool shows, however it was started.
inline constexpr std::string_view kBackupProgressTitle = "Backup Progress";
inline constexpr std::string_view kSelectionTitle = "Selection Information";

// One command line of the tool.
struct SystemBackupOrder {
  std::string file;
  std::string job_name;
};

// std::nullopt for words that don't order a backup of the System State.
std::optional<SystemBackupOrder> ParseSystemBackup(const std::vector<std::string>& words);

enum class SystemBackupOutcome { kVerified, kUnverified, kWithoutLog };

// What the tool leaves: the backup file, a log of its own numbering, and the registry entries that lead from
// the job's name to the log.
class SystemBackup {
 public:
  explicit SystemBackup(const Machine& machine) : machine_(machine) {}

  // Does the whole order. A backup file that can't be written is told in the log.
  void Run(const SystemBackupOrder& order, SystemBackupOutcome outcome);

  // The path of the log with this number, from 1 on.
  [[nodiscard]] std::string LogPath(int number) const;

  // The text of a log.
  static std::string LogText(const SystemBackupOrder& order, bool is_written, bool is_verified);

 private:
  bool WriteBackup(const std::string& file);
  int TakeLogNumber();
  void WriteLog(const SystemBackupOrder& order, const std::string& text);

  Machine machine_;
};

}  // namespace ondura::rehearsal
