#include "schedule/BackupSetStore.h"

namespace ondura {

namespace {

// No selection comes near; a spoiled file of nothing but line ends must not take all memory.
constexpr std::size_t kMostLines = 1'000'000;

}  // namespace

void BackupSetStore::DB_ReadBackdata() {
  DB_ReadBackdataNew(BackupSetFilePath, BackupSetLines);
  machine_.files.Copy(BackupSetFilePath, installation_.DataFile(kBackupSetFileName));
}

void BackupSetStore::DB_ReadBackdataNew(std::string_view path, std::vector<std::string>& lines) {
  ClearCollection(lines);
  const auto bytes = machine_.files.Read(path);
  if (!bytes) return;
  std::string_view rest = *bytes;
  while (!rest.empty() && lines.size() < kMostLines) {
    const auto end = rest.find('\n');
    std::string_view line = rest.substr(0, end);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    lines.push_back(machine_.code_page.ToUtf8(line));
  }
}

}  // namespace ondura
