#include <algorithm>
#include <array>

#include "platform/win32/handles.h"
#include "platform/win32/paths.h"
#include "platform/win32/ports.h"
#include "platform/win32/text_edges.h"
#include "platform/win32/windows_api.h"

#include <objbase.h>
#include <shlobj.h>

namespace ondura {

namespace {

constexpr std::size_t kRootsBytes = 105;  // 26 roots of 4 bytes and the end
constexpr std::size_t kPathBytes = 260;

// A place in the shell's tree, allocated by the shell.
struct ItemListHandle {
  using Value = LPITEMIDLIST;
  static bool IsValid(Value list) { return list != nullptr; }
  static void Close(Value list) { CoTaskMemFree(list); }
};
using UniqueItemList = Unique<ItemListHandle>;

using PathBuffer = std::array<char, kPathBytes>;

// What a call that fills a path buffer left there; empty when it failed or the path did not fit.
std::string PathIn(const PathBuffer& buffer, DWORD length) {
  return length < buffer.size() ? FromSystem({buffer.data(), length}) : std::string{};
}

DriveKind KindOfType(UINT type) {
  switch (type) {
    case DRIVE_REMOVABLE:
      return DriveKind::kRemovable;
    case DRIVE_FIXED:
      return DriveKind::kFixed;
    case DRIVE_REMOTE:
      return DriveKind::kNetwork;
    case DRIVE_CDROM:
      return DriveKind::kCdRom;
    case DRIVE_RAMDISK:
      return DriveKind::kRamDisk;
    default:
      return DriveKind::kUnknown;
  }
}

std::string FullForm(std::string_view path) {
  PathBuffer full{};
  const std::string given = ToSystem(path);
  return PathIn(full, GetFullPathNameA(given.c_str(), kPathBytes, full.data(), nullptr));
}

// The name as the folder keeps it. The platform lengthens short parts and leaves the rest as it was given.
std::string OwnName(const std::string& path) {
  WIN32_FIND_DATAW found{};
  const UniqueFileSearch search{FindFirstFileW(WidePath(path).c_str(), &found)};
  return search.valid() ? FromWide(found.cFileName) : path.substr(path.rfind('\\') + 1);
}

std::string InOwnLetterCase(const std::string& path) {
  if (path.size() < 3 || path[1] != ':') return path;
  std::string done = path.substr(0, 2);
  for (std::size_t start = 3; start < path.size();) {
    const std::size_t end = std::min(path.find('\\', start), path.size());
    done += "\\" + OwnName(path.substr(0, end));
    start = end + 1;
  }
  return path.ends_with('\\') ? done + "\\" : done;
}

class Win32Drives : public Drives {
 public:
  std::vector<std::string> Roots() override {
    std::array<char, kRootsBytes> texts{};
    const DWORD length = GetLogicalDriveStringsA(kRootsBytes, texts.data());
    std::vector<std::string> roots;
    if (length > kRootsBytes) return roots;
    for (const char* root = texts.data(); *root != '\0'; root += roots.back().size() + 1) {
      roots.emplace_back(root);
    }
    return roots;
  }

  DriveKind KindOf(std::string_view root) override {
    return KindOfType(GetDriveTypeA(ToSystem(root).c_str()));
  }

  std::optional<std::uint64_t> FreeBytes(std::string_view path) override {
    ULARGE_INTEGER free_bytes{};
    const bool known = GetDiskFreeSpaceExA(ToSystem(path).c_str(), &free_bytes, nullptr, nullptr) != FALSE;
    return known ? std::optional<std::uint64_t>{free_bytes.QuadPart} : std::nullopt;
  }

  std::optional<std::uint64_t> TotalBytes(std::string_view path) override {
    ULARGE_INTEGER total_bytes{};
    const bool known = GetDiskFreeSpaceExA(ToSystem(path).c_str(), nullptr, &total_bytes, nullptr) != FALSE;
    return known ? std::optional<std::uint64_t>{total_bytes.QuadPart} : std::nullopt;
  }

  std::string ShortPath(std::string_view path) override {
    PathBuffer buffer{};
    return PathIn(buffer, GetShortPathNameA(ToSystem(path).c_str(), buffer.data(), kPathBytes));
  }

  std::string LongPath(std::string_view path) override {
    PathBuffer buffer{};
    const std::string full = ToSystem(FullForm(path));
    const DWORD length = GetLongPathNameA(full.c_str(), buffer.data(), kPathBytes);
    return InOwnLetterCase(PathIn(buffer, length));
  }

  std::string SystemFolder() override {
    PathBuffer buffer{};
    return PathIn(buffer, GetSystemDirectoryA(buffer.data(), kPathBytes));
  }

  std::string LocalDataFolder() override {
    UniqueItemList list;
    PathBuffer buffer{};
    const bool known = SHGetSpecialFolderLocation(nullptr, CSIDL_LOCAL_APPDATA, list.Receive()) == S_OK &&
                       SHGetPathFromIDListA(list.get(), buffer.data());
    return known ? FromSystem(buffer.data()) : std::string{};
  }
};

}  // namespace

std::unique_ptr<Drives> MakeWin32Drives() { return std::make_unique<Win32Drives>(); }

}  // namespace ondura
