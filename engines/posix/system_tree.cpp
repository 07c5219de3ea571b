#include "engines/common/system_tree.h"

#include <filesystem>
#include <system_error>

namespace ondura::engines {

namespace fs = std::filesystem;

std::string PathIn(std::string_view folder, std::string_view name) {
  return (fs::path{folder} / name).string();
}

EntryKind WhatIs(const std::string& path) {
  std::error_code error;
  if (fs::symlink_status(path, error).type() == fs::file_type::not_found) return EntryKind::kNothing;
  return fs::is_directory(path, error) ? EntryKind::kFolder : EntryKind::kFile;
}

bool ListFolder(const std::string& folder, const TakeEntry& take) {
  std::error_code error;
  for (fs::directory_iterator at{folder, error}, end; !error && at != end; at.increment(error)) {
    std::error_code unknown;
    const bool is_folder = at->symlink_status(unknown).type() == fs::file_type::directory;
    const std::uintmax_t bytes = at->is_regular_file(unknown) ? at->file_size(unknown) : 0;
    take(at->path().filename().string(), is_folder ? EntryKind::kFolder : EntryKind::kFile,
         unknown ? 0 : bytes);
  }
  return !error;
}

bool MakeFolders(const std::string& path) {
  std::error_code error;
  fs::create_directories(path, error);
  return fs::is_directory(path, error);
}

bool MoveEntry(const std::string& from, const std::string& to) {
  std::error_code error;
  fs::rename(from, to, error);
  return !error;
}

bool RemoveTree(const std::string& path) {
  std::error_code error;
  fs::remove_all(path, error);
  return !error;
}

std::optional<std::int64_t> FolderTime(const std::string& path) {
  std::error_code error;
  const fs::file_time_type time = fs::last_write_time(path, error);
  if (error) return std::nullopt;
  return time.time_since_epoch().count();
}

void SetFolderTime(const std::string& path, std::int64_t time) {
  std::error_code error;
  fs::last_write_time(path, fs::file_time_type{fs::file_time_type::duration{time}}, error);
}

}  // namespace ondura::engines
