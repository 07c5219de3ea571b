#include "engines/restic/Restore.h"

#include <algorithm>
#include <utility>

#include "engines/common/HostProcess.h"
#include "engines/common/system_tree.h"
#include "engines/restic/exclude_patterns.h"
#include "engines/restic/snapshot_files.h"
#include "text/text.h"

namespace ondura::engines {

namespace {

using namespace std::chrono_literals;

// A look at the progress walks what has come so far.
constexpr int kLooksBetweenProgress = 20;

constexpr std::size_t kMostNamed = 5;

std::string FoldedPath(std::string_view path) {
  while (path.size() > 3 && path.ends_with('\\')) path = WithoutLast(path);
  return ToLower(path);
}

void AddFigures(const std::string& folder, Restore::Figures& figures) {
  ListFolder(folder, [&](const std::string& name, EntryKind kind, std::uint64_t bytes) {
    const bool is_folder = kind == EntryKind::kFolder;
    ++(is_folder ? figures.folders : figures.files);
    figures.bytes += bytes;
    if (is_folder) AddFigures(PathIn(folder, name), figures);
  });
}

Restore::Figures FiguresOf(const std::string& folder) {
  Restore::Figures figures;
  AddFigures(folder, figures);
  return figures;
}

// A folder that is gone again with this object, and all that is left in it.
class FreshFolder {
 public:
  // One that a killed restore has left goes first.
  explicit FreshFolder(std::string path)
      : path_(std::move(path)), is_made_(RemoveTree(path_) && MakeFolders(path_)) {}
  ~FreshFolder() { RemoveTree(path_); }
  FreshFolder(const FreshFolder&) = delete;
  FreshFolder& operator=(const FreshFolder&) = delete;

  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] bool IsMade() const { return is_made_; }

 private:
  std::string path_;
  bool is_made_;
};

// What would be overwritten by moving what is in `from` into `to`.
void FindInTheWay(const std::string& from, const std::string& to, std::vector<std::string>& in_the_way) {
  ListFolder(from, [&](const std::string& name, EntryKind kind, std::uint64_t) {
    const std::string target = PathIn(to, name);
    const EntryKind there = WhatIs(target);
    if (there == EntryKind::kNothing) return;
    if (kind == EntryKind::kFolder && there == EntryKind::kFolder) {
      FindInTheWay(PathIn(from, name), target, in_the_way);
    } else {
      in_the_way.push_back(target);
    }
  });
}

// Moves what is in `from` into `to`, folder by folder where both have one. A whole folder keeps its times.
// The path that it got stuck at; empty if all was moved.
std::string MoveInto(const std::string& from, const std::string& to) {
  std::vector<std::pair<std::string, EntryKind>> entries;
  const bool listed = ListFolder(from, [&](const std::string& name, EntryKind kind, std::uint64_t) {
    entries.emplace_back(name, kind);
  });
  if (!listed) return from;
  for (const auto& [name, kind] : entries) {
    const std::string source = PathIn(from, name);
    std::string target = PathIn(to, name);
    const bool is_folder_there = WhatIs(target) == EntryKind::kFolder;
    if (kind == EntryKind::kFolder && is_folder_there) {
      const auto time = FolderTime(source);
      std::string stuck = MoveInto(source, target);
      if (!stuck.empty()) return stuck;
      if (time) SetFolderTime(target, *time);
    } else if (is_folder_there || !MoveEntry(source, target)) {
      return target;
    }
  }
  return {};
}

}  // namespace

bool Restore::Run(const ResticSnapshot& snapshot, const std::vector<std::string>& paths) {
  if (!FindWanted(snapshot, paths)) return false;
  // Beside its place, so that a file is moved by one step.
  const FreshFolder fresh{PathIn(to_, ".ondura-restore-" + std::to_string(OwnProcessId()))};
  if (!fresh.IsMade()) return Fail("the folder " + to_ + " can't be made or written to");
  const std::string& folder = fresh.path();
  const bool all_came = Fetch(snapshot, folder);
  const std::string reason = error_;
  if (!MayMove(folder) || !Move(folder)) return false;
  return all_came || Fail(reason);
}

bool Restore::FindWanted(const ResticSnapshot& snapshot, const std::vector<std::string>& paths) {
  std::vector<std::pair<std::string, bool>> wanted;
  wanted.reserve(paths.size());
  for (const std::string& path : paths) wanted.emplace_back(FoldedPath(path), false);
  const bool listed = ForEachNode(store_, snapshot.id, [&](const ResticNode& node) {
    const std::string path = ToLower(store_.view().MachinePath(node.path));
    bool counts = false;
    for (auto& [name, is_found] : wanted) {
      if (path == name) {
        if (!is_found) patterns_.push_back(node.path);
        is_found = true;
      }
      counts = counts || path == name || path.starts_with(WithBackslash(name));
    }
    if (!counts) return;
    ++(node.type == "dir" ? total_.folders : total_.files);
    total_.bytes += node.size_bytes;
  });
  if (!listed) return Fail(store_.Reason());
  for (std::size_t at = 0; at < wanted.size(); ++at) {
    if (!wanted[at].second)
      return Fail(paths[at] + " is not in the snapshot of " + snapshot.time.substr(0, 19));
  }
  return true;
}

bool Restore::Fetch(const ResticSnapshot& snapshot, const std::string& fresh) {
  std::vector<std::string> arguments{"restore", snapshot.id, "--target", fresh};
  const bool escapes = store_.view().EscapesByBackslash();
  for (const std::string& path : patterns_) {
    // A byte that is no UTF-8 was shown as U+FFFD, and any character will do for it.
    const std::string pattern = ReplaceAll(ExactPattern(path, escapes), "\xEF\xBF\xBD", "?");
    arguments.insert(arguments.end(), {"--include", pattern});
  }
  int looks = 0;
  const ResticEnd end = store_.program().Do({.arguments = std::move(arguments),
                                             .take_line = [](const PipedLine&) {},
                                             .is_over =
                                                 [&] {
                                                   if (++looks % kLooksBetweenProgress == 0) {
                                                     progress_(FiguresOf(fresh), total_);
                                                   }
                                                   return false;
                                                 }});
  if (store_.Check(end)) return true;
  return Fail("not all came back: " + store_.Reason());
}

bool Restore::MayMove(const std::string& fresh) {
  if (overwrites_) return true;
  std::vector<std::string> in_the_way;
  FindInTheWay(fresh, to_, in_the_way);
  if (in_the_way.empty()) return true;
  const std::size_t count = in_the_way.size();
  in_the_way.resize(std::min(count, kMostNamed));
  return Fail(std::to_string(count) + " files are there already, such as " + Join(in_the_way, ", ") +
              "; nothing was restored. Choose another folder, or overwrite them with --force");
}

bool Restore::Move(const std::string& fresh) {
  restored_ = FiguresOf(fresh);
  const std::string stuck = MoveInto(fresh, to_);
  if (!stuck.empty())
    return Fail("could not be moved to its place: " + stuck + " is in the way or can't be written");
  return true;
}

bool Restore::Fail(std::string error) {
  error_ = std::move(error);
  return false;
}

}  // namespace ondura::engines
