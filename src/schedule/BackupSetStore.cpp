#include "schedule/BackupSetStore.h"

#include "util/TextFiles.h"

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
    lines.push_back(machine_.code_page.ToUtf8(TakeLine(rest)));
  }
  if (!rest.empty()) {
    trace_.User("  Backup set lines beyond " + std::to_string(kMostLines) +
                " are left out : " + std::string{path});
  }
}

}  // namespace ondura
