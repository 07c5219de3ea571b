#include <algorithm>
#include <array>

#include "machines/win32/handles.h"
#include "machines/win32/paths.h"
#include "machines/win32/ports.h"
#include "machines/win32/text_edges.h"
#include "machines/win32/windows_api.h"

#include <objbase.h>
#include <shlobj.h>

namespace ondura {

namespace {

constexpr std::size_t kRootsBytes = 105;  // 26 roots of 4 bytes and the end
constexpr std::size_t kPathUnits = 260;

// A place in the shell's tree, allocated by the shell.
struct ItemListHandle {
  using Value = LPITEMIDLIST;
  static bool IsValid(Value list) { return list != nullptr; }
  static void Close(Value list) { CoTaskMemFree(list); }
};
using UniqueItemList = Unique<ItemListHandle>;

// The text that a call leaves in a buffer of wide characters, which it is given anew where the text did not
// fit. Empty when the call failed.
template <typename Fill>
std::wstring TextOf(Fill fill) {
  std::wstring text(kPathUnits, L'\0');
  DWORD length = fill(text.data(), static_cast<DWORD>(text.size()));
  if (length >= text.size()) {
    text.resize(length + 1);
    length = fill(text.data(), static_cast<DWORD>(text.size()));
  }
  text.resize(length < text.size() ? length : 0);
  return text;
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

std::wstring FullForm(const std::wstring& path) {
  return TextOf(
      [&](wchar_t* into, DWORD size) { return GetFullPathNameW(path.c_str(), size, into, nullptr); });
}

// The name as the folder keeps it. The platform lengthens short parts and leaves the rest as it was given.
std::wstring OwnName(const std::wstring& path) {
  WIN32_FIND_DATAW found{};
  const UniqueFileSearch search{FindFirstFileW(WithoutLengthLimit(path).c_str(), &found)};
  return search.valid() ? std::wstring{found.cFileName} : path.substr(path.rfind(L'\\') + 1);
}

std::wstring InOwnLetterCase(const std::wstring& path) {
  if (path.size() < 3 || path[1] != L':') return path;
  std::wstring done = path.substr(0, 2);
  for (std::size_t start = 3; start < path.size();) {
    const std::size_t end = std::min(path.find(L'\\', start), path.size());
    done += L"\\" + OwnName(path.substr(0, end));
    start = end + 1;
  }
  return path.ends_with(L'\\') ? done + L"\\" : done;
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
    return KindOfType(GetDriveTypeW(WidePath(root).c_str()));
  }

  std::optional<std::uint64_t> FreeBytes(std::string_view path) override {
    ULARGE_INTEGER free_bytes{};
    const bool known = GetDiskFreeSpaceExW(WidePath(path).c_str(), &free_bytes, nullptr, nullptr) != FALSE;
    return known ? std::optional<std::uint64_t>{free_bytes.QuadPart} : std::nullopt;
  }

  std::optional<std::uint64_t> TotalBytes(std::string_view path) override {
    ULARGE_INTEGER total_bytes{};
    const bool known = GetDiskFreeSpaceExW(WidePath(path).c_str(), nullptr, &total_bytes, nullptr) != FALSE;
    return known ? std::optional<std::uint64_t>{total_bytes.QuadPart} : std::nullopt;
  }

  std::string ShortPath(std::string_view path) override {
    const std::wstring given = WidePath(path);
    if (HasWildcard(given)) return {};
    return FromWide(WithLengthLimit(
        TextOf([&](wchar_t* into, DWORD size) { return GetShortPathNameW(given.c_str(), into, size); })));
  }

  std::string LongPath(std::string_view path) override {
    const std::wstring full = FullForm(WidePath(path));
    if (HasWildcard(full)) return {};
    const std::wstring known =
        TextOf([&](wchar_t* into, DWORD size) { return GetLongPathNameW(full.c_str(), into, size); });
    return FromWide(InOwnLetterCase(WithLengthLimit(known)));
  }

  std::string SystemFolder() override {
    return FromWide(TextOf([](wchar_t* into, DWORD size) { return GetSystemDirectoryW(into, size); }));
  }

  std::string LocalDataFolder() override {
    UniqueItemList list;
    std::array<wchar_t, kPathUnits> folder{};
    const bool known = SHGetSpecialFolderLocation(nullptr, CSIDL_LOCAL_APPDATA, list.Receive()) == S_OK &&
                       SHGetPathFromIDListW(list.get(), folder.data());
    return known ? FromWide(folder.data()) : std::string{};
  }
};

}  // namespace

std::unique_ptr<Drives> MakeWin32Drives() { return std::make_unique<Win32Drives>(); }

}  // namespace ondura
