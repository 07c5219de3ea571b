#include "rehearsal/common/SystemBackup.h"

#include "text/text.h"
#include "util/TextFiles.h"

namespace ondura::rehearsal {

namespace {

constexpr std::string_view kLogFilesKey = R"(Software\Microsoft\Ntbackup\Log Files)";
constexpr std::uint32_t kMostLogs = 10;
constexpr std::size_t kSystemStateBytes = 65536;

std::optional<std::string> ValueOf(const std::vector<std::string>& words, std::string_view option) {
  for (std::size_t at = 0; at + 1 < words.size(); ++at) {
    if (EqualsIgnoringCase(words[at], option)) return words[at + 1];
  }
  return std::nullopt;
}

RegistryName LocalMachine(std::string_view key, std::string_view value) {
  return {RegistryRoot::kLocalMachine, key, value};
}

}  // namespace

std::optional<SystemBackupOrder> ParseSystemBackup(const std::vector<std::string>& words) {
  const bool is_backup = words.size() > 2 && EqualsIgnoringCase(words[0], "backup") &&
                         EqualsIgnoringCase(words[1], "systemstate");
  const auto file = ValueOf(words, "/f");
  const auto job_name = ValueOf(words, "/j");
  if (!is_backup || !file || !job_name) return std::nullopt;
  return SystemBackupOrder{*file, *job_name};
}

void SystemBackup::Run(const SystemBackupOrder& order, SystemBackupOutcome outcome) {
  const bool is_written = WriteBackup(order.file);
  if (outcome == SystemBackupOutcome::kWithoutLog) return;
  WriteLog(order, LogText(order, is_written, outcome == SystemBackupOutcome::kVerified));
}

bool SystemBackup::WriteBackup(const std::string& file) {
  std::string bytes = "System State of " + machine_.system.ComputerName() + "\r\n";
  bytes.resize(kSystemStateBytes, 's');
  return machine_.files.Write(file, bytes, IfPresent::kReplace);
}

std::string SystemBackup::LogPath(int number) const {
  return machine_.drives.LocalDataFolder() + R"(\Microsoft\Windows NT\NTBackup\data\backup)" +
         Padded(number, 2) + ".log";
}

std::string SystemBackup::LogText(const SystemBackupOrder& order, bool is_written, bool is_verified) {
  std::string text =
      "Backup Status\r\nOperation: Backup\r\nActive backup destination: File\r\nMedia name: \"" +
      order.job_name + "\"\r\n\r\nBackup of \"System State\"\r\n";
  if (!is_written) text += "The file " + order.file + " can't be written.\r\n";
  if (is_written && is_verified) {
    text += "\r\n----------------------\r\n\r\nVerify Status\r\nOperation: Verify After Backup\r\n";
  } else {
    text += "The Operation did not successfully complete.\r\n";
  }
  return text;
}

// The tool keeps ten logs. The number of the oldest is given out anew when there are as many.
int SystemBackup::TakeLogNumber() {
  const auto count_name = LocalMachine(kLogFilesKey, "Log File Count");
  const auto count = machine_.registry.Read(count_name, RegistryAccess::kQueryValue);
  const std::uint32_t kept = count ? count->number : 0;
  if (kept < kMostLogs) {
    machine_.registry.Write(count_name, {RegistryType::kDword, {}, kept + 1});
    return static_cast<int>(kept) + 1;
  }
  int oldest = 1;
  for (int number = 2; number <= static_cast<int>(kMostLogs); ++number) {
    if (machine_.files.Modified(LogPath(number)) < machine_.files.Modified(LogPath(oldest))) oldest = number;
  }
  return oldest;
}

void SystemBackup::WriteLog(const SystemBackupOrder& order, const std::string& text) {
  const int number = TakeLogNumber();
  const std::string path = LogPath(number);
  // Each folder of the path in turn; those that are there stay.
  for (auto at = path.find('\\', 3); at != std::string::npos; at = path.find('\\', at + 1)) {
    machine_.folders.Make(path.substr(0, at));
  }
  TextFiles(machine_.files, machine_.code_page).Write(path, text, Encoding::kUtf16);
  const std::string key = std::string{kLogFilesKey} + "\\Log#" + std::to_string(number);
  machine_.registry.Write(LocalMachine(key, "Job Name"), {RegistryType::kText, order.job_name, 0});
}

}  // namespace ondura::rehearsal
