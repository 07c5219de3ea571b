#include "machines/win32/paths.h"

#include "machines/win32/text_edges.h"
#include "machines/win32/windows_api.h"

namespace ondura {

namespace {

// Folders are refused from 248 characters on, files from 260; what a search appends has room between.
constexpr std::size_t kLongFrom = 240;

constexpr std::wstring_view kNetwork = L"\\\\";
constexpr std::wstring_view kNoLimit = L"\\\\?\\";
constexpr std::wstring_view kNoLimitNetwork = L"\\\\?\\UNC";

// Without doubled separators, slashes and dots, which the form without a limit takes for names.
std::wstring FullForm(const std::wstring& path) {
  const DWORD needed = GetFullPathNameW(path.c_str(), 0, nullptr, nullptr);
  std::wstring full(needed, L'\0');
  const DWORD length = GetFullPathNameW(path.c_str(), needed, full.data(), nullptr);
  full.resize(length < needed ? length : 0);
  return full;
}

bool HasNetworkPrefix(std::wstring_view path) {
  return path.size() >= kNoLimitNetwork.size() &&
         _wcsnicmp(path.data(), kNoLimitNetwork.data(), kNoLimitNetwork.size()) == 0;
}

}  // namespace

std::wstring WithoutLengthLimit(std::wstring path) {
  if (path.size() < kLongFrom || path.starts_with(kNoLimit)) return path;
  const std::wstring full = FullForm(path);
  if (full.empty()) return path;
  const bool is_network = full.starts_with(L"\\\\");
  return is_network ? std::wstring{kNoLimitNetwork} + full.substr(1) : std::wstring{kNoLimit} + full;
}

std::wstring WithLengthLimit(const std::wstring& path) {
  if (HasNetworkPrefix(path)) return L"\\" + path.substr(kNoLimitNetwork.size());
  return path.starts_with(kNoLimit) ? path.substr(kNoLimit.size()) : path;
}

bool HasWildcard(std::wstring_view path) {
  if (path.starts_with(kNoLimit)) path.remove_prefix(kNoLimit.size());
  return path.find_first_of(L"?*") != std::wstring_view::npos;
}

bool IsLinkToFolder(const FoundFolder& found) {
  constexpr DWORD kBoth = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
  if ((found.attributes & kBoth) != kBoth) return false;
  switch (found.reparse_tag) {
    case IO_REPARSE_TAG_SYMLINK:
    case 0:
      return true;
    case IO_REPARSE_TAG_MOUNT_POINT:
      return !found.is_volume_mounted;
    default:
      return false;
  }
}

std::wstring WidePath(std::string_view path) {
  std::wstring wide = ToWide(path);
  if (wide.size() == 2 && wide[1] == L':') wide += L'\\';
  return WithoutLengthLimit(std::move(wide));
}

bool IsFolder(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool IsRoot(const std::wstring& path) {
  const std::wstring full = FullForm(path);
  std::wstring_view rest = full;
  const bool is_network = !rest.starts_with(kNoLimit) || HasNetworkPrefix(rest);
  if (rest.starts_with(kNoLimit)) rest.remove_prefix((is_network ? kNoLimitNetwork : kNoLimit).size());
  const std::size_t names_of_root = is_network && full.starts_with(kNetwork) ? 2 : 1;
  std::size_t names = 0;
  for (std::size_t at = rest.find_first_not_of(L'\\'); at != std::wstring_view::npos;
       at = rest.find_first_not_of(L'\\', rest.find(L'\\', at))) {
    ++names;
  }
  return names <= names_of_root;
}

std::string_view WithoutTrailingSeparators(std::string_view path) {
  while (path.ends_with('\\') || path.ends_with('/')) path.remove_suffix(1);
  return path;
}

}  // namespace ondura
