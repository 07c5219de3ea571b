#pragma once

#include <string>
#include <string_view>

namespace ondura {

// The path for a W call. A drive alone ("C:") means its root, not the folder that the process last used
// there. A path near the limit of 260 characters takes the form that has none ("\\?\C:\...").
std::wstring WidePath(std::string_view path);

// The same for a path that is wide already, such as one built during a walk.
std::wstring WithoutLengthLimit(std::wstring path);

// The path as it was before it took the form without a limit.
std::wstring WithLengthLimit(const std::wstring& path);

// A search would take the path for a pattern and answer with another file. No file has such a name.
bool HasWildcard(std::wstring_view path);

// What a search finds in a folder, as far as it decides whether it is a folder to walk.
struct FoundFolder {
  unsigned long attributes = 0;
  unsigned long reparse_tag = 0;   // 0 where the system does not say
  bool is_volume_mounted = false;  // of a mount point: a volume of its own is there
};

// True for a junction or a directory link, which leads to a folder elsewhere and may lead to one above.
// False for a mounted volume, and for the folders that a cloud provider fills when they are opened.
bool IsLinkToFolder(const FoundFolder& found);

// True for a folder, false for a file or nothing.
bool IsFolder(const std::wstring& path);

// True for the root of a drive or of a network share, however the path is written.
bool IsRoot(const std::wstring& path);

// The path without the separators at its end.
std::string_view WithoutTrailingSeparators(std::string_view path);

}  // namespace ondura
