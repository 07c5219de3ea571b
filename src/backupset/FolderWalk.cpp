#include "backupset/FolderWalk.h"

#include <vector>

#include "text/text.h"

namespace ondura {

namespace {

constexpr std::chrono::milliseconds kPause{1};
constexpr std::int64_t kEntriesWithoutPause = 10;
constexpr std::int64_t kPassesBetweenPauses = 11;

}  // namespace

FolderTotals FolderWalk::Measure(std::string_view root) {
  Begin(root);
  while (!queue_.empty()) {
    const std::int64_t pauses = totals_.pauses;
    ScanFolderForSize();
    Pause(totals_.pauses - pauses);
  }
  return totals_;
}

FolderTotals FolderWalk::Count(std::string_view root) {
  Begin(root);
  while (!queue_.empty()) {
    const std::int64_t pauses = totals_.pauses;
    CountFolderFiles();
    Pause(totals_.pauses - pauses);
  }
  return totals_;
}

FolderTotals FolderWalk::AddUp(std::string_view root) {
  Begin(root);
  while (!queue_.empty() && totals_.is_complete) ScanFolderForSize();
  return totals_;
}

double FolderWalk::GetMappedDriveSize(std::string_view sRoot) {
  double size_bytes = 0;
  std::vector<std::string> subfolders;
  const std::string root = WithBackslash(sRoot);
  machine_.folders.List(root, [&](const FolderEntry& entry) {
    if (entry.leads_off_drive) return Visit::kContinue;
    if (entry.is_folder) {
      subfolders.push_back(root + std::string{entry.name});
    } else {
      size_bytes += static_cast<double>(entry.size_bytes);
    }
    return Visit::kContinue;
  });
  for (const std::string& subfolder : subfolders) size_bytes += AddUp(subfolder).WholeSize();
  return size_bytes;
}

void FolderWalk::Begin(std::string_view root) {
  queue_.clear();
  totals_ = {};
  // A backslash alone would be the root of whatever drive is the present one.
  if (!root.empty()) queue_.push_back(WithBackslash(root));
}

void FolderWalk::ListNext(Take take) {
  const std::string folder = std::move(queue_.front());
  queue_.pop_front();
  std::int64_t entries = 0;
  const bool is_listed = machine_.folders.List(folder, [&](const FolderEntry& entry) {
    if (entry.leads_off_drive) return Visit::kContinue;
    ++entries;
    if (entry.is_folder) {
      AddSubfolder(folder, entry.name);
    } else {
      ++totals_.files;
      if (take == Take::kSizeAndCount) totals_.size_bytes += static_cast<double>(entry.size_bytes);
    }
    return Visit::kContinue;
  });
  ++totals_.folders;
  if (entries > kEntriesWithoutPause) ++totals_.pauses;
  if (static_cast<std::int64_t>(totals_.folders) % kPassesBetweenPauses == 0) ++totals_.pauses;
  totals_.is_complete = totals_.is_complete && is_listed;
}

void FolderWalk::AddSubfolder(std::string_view folder, std::string_view name) {
  std::string path;
  path.reserve(folder.size() + name.size() + 1);
  path.append(folder).append(name).append("\\");
  queue_.push_back(std::move(path));
}

void FolderWalk::Pause(std::int64_t times) {
  for (; times > 0; --times) machine_.clock.Sleep(kPause);
}

}  // namespace ondura
