#pragma once

#include <string>
#include <string_view>

#include "platform/machine.h"

namespace ondura {

// The long forms of paths with 8.3 names.
class LongPaths {
 public:
  explicit LongPaths(const Machine& machine) : machine_(machine) {}

  // The path itself where there is no long form. Where the machine can't tell it, each part with a "~" is
  // looked for by its short name in its folder; a part that is not found stays as it is.
  std::string GetLongPath(std::string_view sPath);

 private:
  std::string Rebuild(std::string_view path);
  std::string LongName(const std::string& folder, std::string_view short_name, bool may_be_file);

  Machine machine_;
};

}  // namespace ondura
