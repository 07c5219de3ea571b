#include "backupset/ExclusionSizes.h"

#include <algorithm>
#include <unordered_set>

#include "backupset/drive_sizes.h"
#include "backupset/long_path.h"
#include "backupset/remove_duplicate.h"
#include "text/text.h"
#include "text/utf16.h"

namespace ondura {

namespace {

constexpr std::string_view kExcludedFolders = "atbkupExcludelist.txt";
constexpr std::string_view kExcludedFiles = "atbkupExcludeFilePath.txt";
constexpr std::string_view kExcludedSizes = "atbkupExcludelistSize.txt";
constexpr std::size_t kRootUnits = 3;  // "C:\"

std::string_view WithoutBackslash(std::string_view path) {
  return path.ends_with('\\') ? WithoutLast(path) : path;
}

}  // namespace

void ExclusionSizes::Load() {
  ReadFolders();
  WriteSizes();
  ReadFiles();
}

void ExclusionSizes::ReadFolders() {
  paths_.clear();
  sizes_.clear();
  times_.clear();
  counted_.clear();
  folder_index_.Clear();
  std::unordered_map<std::string, std::size_t> first;
  for (const std::string& line : ReadList(kExcludedFolders)) {
    const bool may_be_short = line.find('~') != std::string::npos;
    paths_.push_back(may_be_short ? GetLongPath(machine_, line) : line);
    const std::string key = ToLower(WithBackslash(paths_.back()));
    const std::size_t number = first.try_emplace(key, times_.size()).first->second;
    if (number == times_.size()) {
      folder_index_.Add(paths_.back(), number);
      sizes_.push_back(MeasureFolder(line, key));
    } else {
      sizes_.push_back(std::string{sizes_[number]});
    }
    times_.push_back(0);
    ++times_[number];
  }
  folder_index_.Sort();
}

std::string ExclusionSizes::MeasureFolder(std::string_view line, const std::string& key) {
  const std::string folder = WithBackslash(line);
  if (Utf16Length(folder) == kRootUnits) return NumberText(UsedBytes(machine_, walk_, folder));
  const FolderTotals totals = walk_.AddUp(WithoutLast(folder));
  if (totals.is_complete) counted_.emplace(key, totals);
  return NumberText(totals.WholeSize());
}

void ExclusionSizes::WriteSizes() {
  const std::string path = installation_.UserFile(kExcludedSizes);
  if (!machine_.files.Exists(path)) return;
  std::string text;
  for (const std::string& size : sizes_) text.append(size).append(kLineEnd);
  text_files_.Write(path, text, Encoding::kUtf16);
}

// A file in an excluded folder goes with that folder, whatever item it is taken from.
void ExclusionSizes::ReadFiles() {
  files_.clear();
  file_index_.Clear();
  std::unordered_set<std::string> seen;
  for (const std::string& line : ReadList(kExcludedFiles)) {
    if (!line.ends_with('1')) continue;
    const std::string_view file = WithoutLast(WithoutLast(line));
    const bool is_covered = !folder_index_.Same(file).empty() || !folder_index_.Above(file).empty();
    if (is_covered || !seen.insert(ToLower(file)).second) continue;
    files_.emplace_back(file);
    file_index_.Add(file, files_.size() - 1);
  }
  file_index_.Sort();
}

std::vector<std::string> ExclusionSizes::ReadList(std::string_view name) {
  return text_files_.ReadLines(installation_.UserFile(name), Encoding::kUtf16)
      .value_or(std::vector<std::string>{});
}

double ExclusionSizes::SubtractExclusions(double nTotal, std::string_view sPath, double& nCount,
                                          ExclusionKind nKind) {
  const PathIndex::Numbers same = folder_index_.Same(sPath);
  const PathIndex::Numbers above = folder_index_.Above(sPath);
  const PathIndex::Numbers below = folder_index_.Below(sPath);
  std::vector<std::string> notes;
  for (const PathIndex::Numbers* numbers : {&same, &above, &below}) {
    for (const std::size_t number : *numbers) notes.push_back(WithBackslash(paths_[number]));
  }
  const std::string_view item = WithoutBackslash(sPath);
  const bool is_file = !notes.empty() && machine_.files.Exists(item);
  const double file_bytes = is_file ? FileSize(item) : 0;
  for (const std::size_t number : same)
    nTotal -= times_[number] * (is_file ? file_bytes : StoredSize(number));
  for (const std::size_t number : above) nTotal -= times_[number] * (file_bytes + StoredSize(number));
  for (const std::size_t number : below) nTotal -= times_[number] * StoredSize(number);
  PathIndex::Numbers files = file_index_.Same(sPath);
  if (nKind == ExclusionKind::kFolder) files = file_index_.Below(sPath);
  for (const std::size_t number : files) {
    nTotal -= FileSize(files_[number]);
    notes.push_back(files_[number]);
  }
  nCount -= CountNotes(std::move(notes));
  return std::max(nTotal, 0.0);
}

double ExclusionSizes::FileSize(std::string_view path) {
  return static_cast<double>(machine_.files.Size(path).value_or(0));
}

double ExclusionSizes::StoredSize(std::size_t number) const {
  return ParseNumber(sizes_[number]).value_or(0);
}

double ExclusionSizes::CountNotes(std::vector<std::string> notes) {
  RemoveDuplicate(machine_, notes);
  double files = 0;
  for (const std::string& note : notes) files += CountFiles(note);
  return files;
}

// Many items may lie in one excluded folder: it is walked once, and the pauses of its count are made once.
double ExclusionSizes::CountFiles(const std::string& note) {
  if (machine_.files.Exists(WithoutBackslash(note))) return 1;
  const auto [known, is_new] = counted_.try_emplace(ToLower(note));
  FolderTotals& totals = known->second;
  if (is_new) {
    totals = walk_.Count(note);
  } else {
    walk_.PauseAgain(totals);
  }
  totals.pauses = 0;
  return totals.files;
}

}  // namespace ondura
