#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/machine.h"

namespace ondura {

// One of a user's lists of paths: UTF-16, one path a line. Paths match without regard to letter case and
// to a backslash at the end.
class SelectionList {
 public:
  // A missing file is an empty list.
  SelectionList(const Machine& machine, std::string path);

  [[nodiscard]] const std::vector<std::string>& Entries() const { return entries_; }

  // False when the path was there already.
  bool Add(const std::string& entry);

  // False when it was not there.
  bool Remove(std::string_view entry);

  // Removes the file when the list is empty: an empty file would count as a selection. False when it could
  // not be written, or not be read before, as its entries would be lost.
  [[nodiscard]] bool Save() const;

 private:
  Machine machine_;
  std::string path_;
  std::vector<std::string> entries_;
  bool is_unreadable_ = false;
};

}  // namespace ondura
