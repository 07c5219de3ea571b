#include "backupset/FolderWalk.h"

#include <cstdint>
#include <vector>

#include "util/text.h"

namespace ondura {

namespace {

constexpr std::chrono::milliseconds kPause{1};
constexpr std::size_t kEntriesWithoutPause = 10;
constexpr std::int64_t kPassesBetweenPauses = 11;

}  // namespace

FolderTotals FolderWalk::Measure(std::string_view root) {
  Begin(root);
  while (!queue_.empty()) {
    ScanFolderForSize();
    PauseAfterPasses();
  }
  return totals_;
}

double FolderWalk::Count(std::string_view root) {
  Begin(root);
  while (!queue_.empty()) {
    CountFolderFiles();
    PauseAfterPasses();
  }
  return totals_.files;
}

double FolderWalk::FolderSize(std::string_view root) {
  Begin(root);
  while (!queue_.empty() && totals_.is_complete) ListNext(Take::kSizeAndCount);
  return totals_.is_complete ? totals_.size_bytes : 0;
}

double FolderWalk::GetMappedDriveSize(std::string_view sRoot) {
  double size_bytes = 0;
  std::vector<std::string> subfolders;
  const std::string root = WithBackslash(sRoot);
  machine_.folders.List(root, [&](const FolderEntry& entry) {
    if (entry.is_folder) {
      subfolders.push_back(root + std::string{entry.name});
    } else {
      size_bytes += static_cast<double>(entry.size_bytes);
    }
    return Visit::kContinue;
  });
  for (const std::string& subfolder : subfolders) size_bytes += FolderSize(subfolder);
  return size_bytes;
}

void FolderWalk::Begin(std::string_view root) {
  queue_.clear();
  totals_ = {};
  // A backslash alone would be the root of whatever drive is the present one.
  if (!root.empty()) queue_.push_back(WithBackslash(root));
}

void FolderWalk::ScanFolderForSize() {
  if (ListNext(Take::kSizeAndCount) > kEntriesWithoutPause) machine_.clock.Sleep(kPause);
}

void FolderWalk::CountFolderFiles() {
  if (ListNext(Take::kCount) > kEntriesWithoutPause) machine_.clock.Sleep(kPause);
}

std::size_t FolderWalk::ListNext(Take take) {
  const std::string folder = std::move(queue_.front());
  queue_.pop_front();
  ++totals_.folders;
  std::size_t entries = 0;
  const bool is_listed = machine_.folders.List(folder, [&](const FolderEntry& entry) {
    ++entries;
    if (entry.is_folder) {
      AddSubfolder(folder, entry.name);
    } else {
      ++totals_.files;
      if (take == Take::kSizeAndCount) totals_.size_bytes += static_cast<double>(entry.size_bytes);
    }
    return Visit::kContinue;
  });
  totals_.is_complete = totals_.is_complete && is_listed;
  return entries;
}

void FolderWalk::AddSubfolder(std::string_view folder, std::string_view name) {
  std::string path;
  path.reserve(folder.size() + name.size() + 1);
  path.append(folder).append(name).append("\\");
  queue_.push_back(std::move(path));
}

void FolderWalk::PauseAfterPasses() {
  if (static_cast<std::int64_t>(totals_.folders) % kPassesBetweenPauses == 0) machine_.clock.Sleep(kPause);
}

}  // namespace ondura
