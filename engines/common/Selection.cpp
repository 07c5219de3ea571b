#include "engines/common/Selection.h"

#include <algorithm>
#include <chrono>

#include "engine/engine_files.h"
#include "text/text.h"

namespace ondura::engines {

namespace {

Candidate MakeCandidate(std::string path, std::uint64_t size_bytes, LocalTime modified) {
  return {std::move(path), size_bytes, modified, modified, modified};
}

}  // namespace

Selection::Selection(Client& client, const std::vector<std::string>& own_folders) : client_(client) {
  for (const std::string& folder : own_folders) excluded_folders_.insert(ToLower(folder));
  LoadItems();
  LoadEndings();
  LoadExclusions();
}

void Selection::LoadItems() {
  const auto lines = client_.text_files().ReadLines(
      client_.installation().UserFile(engine_files::kSelectionList), Encoding::kUtf16);
  if (!lines) return;
  for (const std::string& line : *lines) {
    const std::string item{Trim(line)};
    // The folders of a person at the desktop; a machine without one has none.
    if (item.empty() || item == "My Documents" || item == "Favorites") continue;
    if (item == "My Computer" || item == "My Compute") {
      std::ranges::copy(client_.machine().drives.Roots(), std::back_inserter(items_));
    } else {
      items_.push_back(item);
    }
  }
}

void Selection::LoadEndings() {
  const std::string path = client_.installation().UserFile(engine_files::kAutomaticSelection);
  const auto lines = client_.text_files().ReadLines(path, Encoding::kCodePage);
  if (!lines || lines->empty() || lines->front().find('1') == std::string::npos) return;
  by_ending_ = true;
  endings_.assign(lines->begin() + 1, lines->end());
  std::erase(endings_, "");
  items_.clear();
  Drives& drives = client_.machine().drives;
  for (const std::string& root : drives.Roots()) {
    if (drives.KindOf(root) == DriveKind::kFixed) items_.push_back(root);
  }
}

void Selection::LoadExclusions() {
  const Installation& installation = client_.installation();
  TextFiles& text_files = client_.text_files();
  const auto folders = text_files.ReadLines(installation.UserFile("atbkupExcludelist.txt"), Encoding::kUtf16);
  for (const std::string& line : folders.value_or(std::vector<std::string>{})) {
    if (Trim(line).empty()) continue;
    const std::string full = client_.machine().drives.LongPath(line);
    excluded_folders_.insert(ToLower(WithBackslash(full.empty() ? line : full)));
  }
  const auto files =
      text_files.ReadLines(installation.UserFile("atbkupExcludeFilePath.txt"), Encoding::kUtf16);
  for (const std::string& line : files.value_or(std::vector<std::string>{})) {
    if (line.empty()) continue;
    // The client marks a line that counts by a separator and "1" after the path; other lines are the path
    // alone.
    excluded_files_.insert(ToLower(line));
    if (line.ends_with('1')) excluded_files_.insert(ToLower(WithoutLast(WithoutLast(line))));
  }
}

std::vector<std::string> Selection::Exclusions() const {
  std::vector<std::string> all(excluded_files_.begin(), excluded_files_.end());
  for (const std::string& folder : excluded_folders_) all.emplace_back(WithoutLast(folder));
  std::ranges::sort(all);
  return all;
}

bool Selection::IsExcluded(std::string_view path) const {
  return excluded_files_.contains(ToLower(path)) || LiesInExcludedFolder(path) ||
         LiesInExcludedFolder(WithBackslash(path));
}

Selection::Outcome Selection::Walk(const std::function<bool()>& is_over) {
  Outcome outcome;
  for (const std::string& item : items_) {
    if (is_over()) break;
    if (client_.machine().folders.Exists(item)) {
      if (LiesInExcludedFolder(WithBackslash(item))) {
        outcome.met_exclusion = true;
      } else {
        WalkFolder(WithBackslash(item), outcome, is_over);
      }
    } else {
      TakeFile(item, outcome);
    }
  }
  return outcome;
}

void Selection::WalkFolder(std::string folder, Outcome& outcome, const std::function<bool()>& is_over) {
  std::vector<std::string> queue{std::move(folder)};
  for (std::size_t at = 0; at < queue.size() && !is_over(); ++at) {
    const std::string next = queue[at];
    const bool listed = client_.machine().folders.List(next, [&](const FolderEntry& entry) {
      TakeEntry(next, entry, queue, outcome);
      return Visit::kContinue;
    });
    if (!listed) outcome.missing.push_back(next);
  }
}

void Selection::TakeEntry(const std::string& folder, const FolderEntry& entry,
                          std::vector<std::string>& queue, Outcome& outcome) {
  std::string path = folder + std::string{entry.name};
  if (entry.is_folder) {
    path += '\\';
    if (IsExcludedFolder(path)) {
      outcome.met_exclusion = true;
    } else {
      queue.push_back(std::move(path));
    }
  } else if (excluded_files_.contains(ToLower(path))) {
    outcome.met_exclusion = true;
  } else if (entry.leads_off_drive) {
    outcome.off_drive.push_back(std::move(path));
  } else if (HasWantedEnding(entry.name)) {
    outcome.files.push_back(MakeCandidate(std::move(path), entry.size_bytes, entry.modified));
  }
}

void Selection::TakeFile(const std::string& path, Outcome& outcome) {
  if (excluded_files_.contains(ToLower(path)) || LiesInExcludedFolder(path)) {
    outcome.met_exclusion = true;
    return;
  }
  const auto size = client_.machine().files.Size(path);
  const auto modified = client_.machine().files.Modified(path);
  if (!size || !modified) {
    outcome.missing.push_back(path);
    return;
  }
  outcome.files.push_back(MakeCandidate(path, *size, *modified));
}

bool Selection::IsExcludedFolder(std::string_view folder) const {
  return excluded_folders_.contains(ToLower(folder));
}

bool Selection::LiesInExcludedFolder(std::string_view path) const {
  const std::string lower = ToLower(path);
  for (auto end = lower.find('\\'); end != std::string::npos; end = lower.find('\\', end + 1)) {
    if (excluded_folders_.contains(lower.substr(0, end + 1))) return true;
  }
  return false;
}

bool Selection::HasWantedEnding(std::string_view name) const {
  if (endings_.empty()) return true;
  return std::ranges::any_of(endings_, [&](const std::string& ending) { return name.ends_with(ending); });
}

}  // namespace ondura::engines
