#include "util/folder_size.h"

#include <vector>

#include "text/text.h"

namespace ondura {

std::uint64_t SizeOfFolder(Folders& folders, const std::string& folder) {
  std::uint64_t size_bytes = 0;
  std::vector<std::string> to_do{folder};
  while (!to_do.empty()) {
    const std::string here = WithBackslash(to_do.back());
    to_do.pop_back();
    folders.List(here, [&](const FolderEntry& entry) {
      size_bytes += entry.size_bytes;
      if (entry.is_folder) to_do.push_back(here + std::string{entry.name});
      return Visit::kContinue;
    });
  }
  return size_bytes;
}

}  // namespace ondura
