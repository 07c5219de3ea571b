// std::filesystem can't list a folder here whose path has more than 260 characters.

#include "engines/common/system_tree.h"

#include <string_view>

#include "machines/win32/Win32Machine.h"
#include "machines/win32/handles.h"
#include "machines/win32/paths.h"
#include "machines/win32/text_edges.h"

namespace ondura::engines {

namespace {

UniqueHandle OpenFolder(const std::string& path, DWORD access) {
  return UniqueHandle{CreateFileW(WidePath(path).c_str(), access,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr)};
}

}  // namespace

std::string PathIn(std::string_view folder, std::string_view name) {
  const bool has_end = folder.ends_with('\\') || folder.ends_with('/');
  return std::string{folder} + (has_end ? "" : "\\") + std::string{name};
}

EntryKind WhatIs(const std::string& path) {
  const std::wstring wide = WidePath(path);
  if (GetFileAttributesW(wide.c_str()) == INVALID_FILE_ATTRIBUTES) return EntryKind::kNothing;
  return IsFolder(wide) ? EntryKind::kFolder : EntryKind::kFile;
}

bool ListFolder(const std::string& folder, const TakeEntry& take) {
  WIN32_FIND_DATAW found{};
  // Room for the pattern, so that the path takes its long form in time.
  const UniqueFileSearch search{FindFirstFileW(WidePath(PathIn(folder, "*")).c_str(), &found)};
  if (!search.valid()) return false;
  do {
    const std::wstring_view name{found.cFileName};
    if (name == L"." || name == L"..") continue;
    constexpr DWORD kKinds = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
    const bool is_folder = (found.dwFileAttributes & kKinds) == FILE_ATTRIBUTE_DIRECTORY;
    const std::uint64_t bytes = (static_cast<std::uint64_t>(found.nFileSizeHigh) << 32U) | found.nFileSizeLow;
    take(FromWide(name), is_folder ? EntryKind::kFolder : EntryKind::kFile, is_folder ? 0 : bytes);
  } while (FindNextFileW(search.get(), &found) != FALSE);
  return GetLastError() == ERROR_NO_MORE_FILES;
}

bool MakeFolders(const std::string& path) {
  if (WhatIs(path) == EntryKind::kFolder) return true;
  const auto end = path.find_last_of("\\/", path.size() - 2);
  if (end != std::string::npos && end > 2) MakeFolders(path.substr(0, end));
  CreateDirectoryW(WidePath(path).c_str(), nullptr);
  return WhatIs(path) == EntryKind::kFolder;
}

bool MoveEntry(const std::string& from, const std::string& to) {
  return MoveFileExW(WidePath(from).c_str(), WidePath(to).c_str(), MOVEFILE_REPLACE_EXISTING) != FALSE;
}

bool RemoveTree(const std::string& path) {
  return WhatIs(path) == EntryKind::kNothing ||
         MakeWin32Machine()->machine().folders.Remove(path, Removal::kForce);
}

std::optional<std::int64_t> FolderTime(const std::string& path) {
  FILETIME time{};
  const UniqueHandle folder = OpenFolder(path, FILE_READ_ATTRIBUTES);
  if (!folder.valid() || !GetFileTime(folder.get(), nullptr, nullptr, &time)) return std::nullopt;
  return (static_cast<std::int64_t>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
}

void SetFolderTime(const std::string& path, std::int64_t time) {
  const UniqueHandle folder = OpenFolder(path, FILE_WRITE_ATTRIBUTES);
  const FILETIME system{static_cast<DWORD>(time & 0xFFFFFFFF), static_cast<DWORD>(time >> 32)};
  if (folder.valid()) SetFileTime(folder.get(), nullptr, nullptr, &system);
}

}  // namespace ondura::engines
