#pragma once

#include <string>
#include <string_view>

namespace ondura {

// The path for a W call. A drive alone ("C:") means its root, not the folder that the process last used
// there. A path near the limit of 260 characters takes the form that has none ("\\?\C:\...").
std::wstring WidePath(std::string_view path);

// The same for a path that is wide already, such as one built during a walk.
std::wstring WithoutLengthLimit(std::wstring path);

// True for a folder, false for a file or nothing.
bool IsFolder(const std::wstring& path);

// The path without the separators at its end.
std::string_view WithoutTrailingSeparators(std::string_view path);

}  // namespace ondura
