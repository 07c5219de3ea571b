#include "engines/restic/Restore.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "engines/common/HostProcess.h"
#include "engines/restic/exclude_patterns.h"
#include "engines/restic/snapshot_files.h"
#include "text/text.h"

namespace ondura::engines {

namespace fs = std::filesystem;

namespace {

using namespace std::chrono_literals;

// A look at the progress walks what has come so far.
constexpr int kLooksBetweenProgress = 20;

constexpr std::size_t kMostNamed = 5;

fs::path PathOf(const std::string& text) { return {std::u8string{text.begin(), text.end()}}; }

std::string TextOf(const fs::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

std::string FoldedPath(std::string_view path) {
  while (path.size() > 3 && path.ends_with('\\')) path = WithoutLast(path);
  return ToLower(path);
}

bool IsThere(const fs::path& path) { return fs::symlink_status(path).type() != fs::file_type::not_found; }

Restore::Figures FiguresOf(const fs::path& folder) {
  Restore::Figures figures;
  std::error_code error;
  for (fs::recursive_directory_iterator at{folder, error}, end; !error && at != end; at.increment(error)) {
    const bool is_folder = at->is_directory(error) && !at->is_symlink(error);
    ++(is_folder ? figures.folders : figures.files);
    if (!is_folder && at->is_regular_file(error)) figures.bytes += at->file_size(error);
  }
  return figures;
}

// A folder that is gone again with this object, and all that is left in it.
class FreshFolder {
 public:
  explicit FreshFolder(fs::path path) : path_(std::move(path)) {
    fs::remove_all(path_, error_);  // one that a killed restore has left
    fs::create_directories(path_, error_);
  }
  ~FreshFolder() { fs::remove_all(path_, error_); }
  FreshFolder(const FreshFolder&) = delete;
  FreshFolder& operator=(const FreshFolder&) = delete;

  [[nodiscard]] const fs::path& path() const { return path_; }
  [[nodiscard]] bool IsMade() const { return !error_; }

 private:
  fs::path path_;
  std::error_code error_;
};

// Moves what is in `from` into `to`, folder by folder where both have one. A whole folder keeps its times.
void MoveInto(const fs::path& from, const fs::path& to) {
  fs::create_directories(to);
  for (const fs::directory_entry& entry : fs::directory_iterator{from}) {
    const fs::path target = to / entry.path().filename();
    const bool both_folders = entry.is_directory() && !entry.is_symlink() && fs::is_directory(target);
    if (both_folders) {
      const auto time = fs::last_write_time(entry.path());
      MoveInto(entry.path(), target);
      fs::last_write_time(target, time);
    } else {
      if (fs::is_directory(target)) throw fs::filesystem_error("a folder is in the way", target, {});
      fs::rename(entry.path(), target);
    }
  }
}

}  // namespace

bool Restore::Run(const ResticSnapshot& snapshot, const std::vector<std::string>& paths) {
  if (!FindWanted(snapshot, paths)) return false;
  // Beside its place, so that a file is moved by one step.
  const FreshFolder fresh{PathOf(to_) / (".ondura-restore-" + std::to_string(OwnProcessId()))};
  if (!fresh.IsMade()) return Fail("the folder " + to_ + " can't be made or written to");
  const std::string folder = TextOf(fresh.path());
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
                                                     progress_(FiguresOf(PathOf(fresh)), total_);
                                                   }
                                                   return false;
                                                 }});
  if (store_.Check(end)) return true;
  return Fail("not all came back: " + store_.Reason());
}

bool Restore::MayMove(const std::string& fresh) {
  if (overwrites_) return true;
  std::vector<std::string> in_the_way;
  std::error_code error;
  for (fs::recursive_directory_iterator at{PathOf(fresh), error}, end; !error && at != end;
       at.increment(error)) {
    const fs::path target = PathOf(to_) / fs::relative(at->path(), PathOf(fresh), error);
    const bool is_folder = at->is_directory(error) && !at->is_symlink(error);
    if (IsThere(target) && !(is_folder && fs::is_directory(target, error)))
      in_the_way.push_back(TextOf(target));
  }
  if (in_the_way.empty()) return true;
  const std::size_t count = in_the_way.size();
  in_the_way.resize(std::min(count, kMostNamed));
  return Fail(std::to_string(count) + " files are there already, such as " + Join(in_the_way, ", ") +
              "; nothing was restored. Choose another folder, or overwrite them with --force");
}

bool Restore::Move(const std::string& fresh) {
  restored_ = FiguresOf(PathOf(fresh));
  try {
    MoveInto(PathOf(fresh), PathOf(to_));
  } catch (const fs::filesystem_error& failure) {
    return Fail(std::string{"could not be moved to its place: "} + failure.what());
  }
  return true;
}

bool Restore::Fail(std::string error) {
  error_ = std::move(error);
  return false;
}

}  // namespace ondura::engines
