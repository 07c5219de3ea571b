#include <array>

#include "machines/win32/handles.h"
#include "machines/win32/paths.h"
#include "machines/win32/ports.h"
#include "machines/win32/system_error.h"
#include "machines/win32/system_times.h"
#include "machines/win32/text_edges.h"

namespace ondura {

namespace {

using FoundVisitor = std::function<Visit(const WIN32_FIND_DATAW&)>;

bool IsFolderEntry(const WIN32_FIND_DATAW& found) {
  return (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

// Asked for mount points alone, as it opens the folder.
bool IsLinkEntry(const std::wstring& folder, const WIN32_FIND_DATAW& found) {
  if ((found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) return false;
  std::array<wchar_t, MAX_PATH> volume{};
  const std::wstring path = WithoutLengthLimit(folder + L"\\" + found.cFileName) + L"\\";
  const bool is_mounted = found.dwReserved0 == IO_REPARSE_TAG_MOUNT_POINT &&
                          GetVolumeNameForVolumeMountPointW(path.c_str(), volume.data(), MAX_PATH) != FALSE;
  return IsLinkToFolder({found.dwFileAttributes, found.dwReserved0, is_mounted});
}

// Every entry that matches `pattern` but "." and "..". False when the search can't start.
bool Search(const std::wstring& pattern, const FoundVisitor& visit) {
  WIN32_FIND_DATAW found{};
  const UniqueFileSearch search{FindFirstFileW(pattern.c_str(), &found)};
  // A drive's root may be empty even of the two dots; the pattern itself is then what is missing.
  if (!search.valid()) return GetLastError() == ERROR_FILE_NOT_FOUND;
  do {
    const std::wstring_view name{found.cFileName};
    if (name == L"." || name == L"..") continue;
    if (visit(found) == Visit::kStop) return true;
  } while (FindNextFileW(search.get(), &found));
  return LastSystemError() == SystemError::kNoMore;
}

// A file or an empty folder. A link to a folder goes, what it points to stays.
bool RemoveOne(const std::wstring& path, DWORD attributes, Removal removal) {
  const bool is_protected = (attributes & FILE_ATTRIBUTE_READONLY) != 0;
  if (is_protected && removal == Removal::kForce) SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
  const bool is_folder = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  return (is_folder ? RemoveDirectoryW(path.c_str()) : DeleteFileW(path.c_str())) != FALSE;
}

bool RemoveTree(const std::wstring& folder, DWORD attributes, Removal removal) {
  if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
    std::vector<WIN32_FIND_DATAW> entries;
    Search(WithoutLengthLimit(folder + L"\\*"), [&](const WIN32_FIND_DATAW& found) {
      entries.push_back(found);
      return Visit::kContinue;
    });
    for (const WIN32_FIND_DATAW& entry : entries) {
      const std::wstring path = WithoutLengthLimit(folder + L"\\" + entry.cFileName);
      if (IsFolderEntry(entry)) {
        RemoveTree(path, entry.dwFileAttributes, removal);
      } else {
        RemoveOne(path, entry.dwFileAttributes, removal);
      }
    }
  }
  // The folder itself stays where any of it did.
  return RemoveOne(folder, attributes, removal);
}

class Win32Folders : public Folders {
 public:
  bool Exists(std::string_view path) override { return IsFolder(WidePath(path)); }

  bool Make(std::string_view path) override {
    return CreateDirectoryW(WidePath(WithoutTrailingSeparators(path)).c_str(), nullptr) != FALSE;
  }

  bool Remove(std::string_view path, Removal removal) override {
    const std::wstring folder = WidePath(WithoutTrailingSeparators(path));
    return !IsRoot(folder) && IsFolder(folder) &&
           RemoveTree(folder, GetFileAttributesW(folder.c_str()), removal);
  }

  bool List(std::string_view path, const std::function<Visit(const FolderEntry&)>& visit) override {
    const std::wstring folder = ToWide(WithoutTrailingSeparators(path));
    if (HasWildcard(folder) || !Exists(path)) return false;
    return Search(WithoutLengthLimit(folder + L"\\*"), [&](const WIN32_FIND_DATAW& found) {
      if (IsLinkEntry(folder, found)) return Visit::kContinue;
      const std::string name = FromWide(found.cFileName);
      const bool is_folder = IsFolderEntry(found);
      if (!is_folder && name.starts_with(kNewContentPrefix)) return Visit::kContinue;
      const std::uint64_t size =
          (static_cast<std::uint64_t>(found.nFileSizeHigh) << 32U) | found.nFileSizeLow;
      return visit({name, is_folder, is_folder ? 0 : size, ToLocalTime(found.ftLastWriteTime)});
    });
  }
};

}  // namespace

std::unique_ptr<Folders> MakeWin32Folders() { return std::make_unique<Win32Folders>(); }

}  // namespace ondura
