#include "util/FolderNames.h"

#include "text/text.h"
#include "text/utf16.h"

namespace ondura {

bool FolderNames::IsFolderPath(std::string_view sPath) {
  constexpr std::size_t kRootLength = 3;  // "C:\"
  if (Utf16Length(sPath) == kRootLength) sPath = WithoutLast(sPath);
  if (sPath.empty()) return true;
  if (machine_.folders.Exists(sPath)) return true;
  if (sPath.ends_with('\\') || machine_.files.Exists(sPath)) return false;
  return IsFirstMatchFolder(sPath);
}

bool FolderNames::IsFirstMatchFolder(std::string_view beginning) {
  const std::string_view name = FileNameOf(beginning);
  const std::string_view parent = beginning.substr(0, beginning.size() - name.size());
  if (parent.empty()) return false;
  const std::string wanted = ToUpper(name);
  const Names& in_parent = NamesIn(parent);
  const auto first = in_parent.lower_bound(wanted);
  return first != in_parent.end() && first->first.starts_with(wanted) && first->second;
}

const FolderNames::Names& FolderNames::NamesIn(std::string_view folder) {
  constexpr std::size_t kMostEntries = 100'000;  // about ten megabytes
  const std::string key = ToUpper(folder);
  if (const auto known = by_folder_.find(key); known != by_folder_.end()) return known->second;
  if (entries_ > kMostEntries) {
    by_folder_.clear();
    entries_ = 0;
  }
  Names& in_folder = by_folder_[key];
  machine_.folders.List(folder, [&](const FolderEntry& entry) {
    in_folder.emplace(ToUpper(entry.name), entry.is_folder);
    return Visit::kContinue;
  });
  entries_ += in_folder.size() + 1;
  return in_folder;
}

}  // namespace ondura
