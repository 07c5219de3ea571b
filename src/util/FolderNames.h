#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>

#include "platform/machine.h"

namespace ondura {

// Which paths of a list are folders. A pass over the list makes one, which reads each parent folder once.
class FolderNames {
 public:
  explicit FolderNames(const Machine& machine) : machine_(machine) {}

  // True when the first entry that the path finds, taken as the start of a name, is a folder. The empty
  // path means the current folder and so is one.
  bool IsFolderPath(std::string_view sPath);

 private:
  // Upper-case names in alphabetical order, and whether each is a folder.
  using Names = std::map<std::string, bool>;

  bool IsFirstMatchFolder(std::string_view beginning);
  const Names& NamesIn(std::string_view folder);

  Machine machine_;
  std::unordered_map<std::string, Names> by_folder_;
  std::size_t entries_ = 0;
};

}  // namespace ondura
