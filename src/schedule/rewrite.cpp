#include "schedule/rewrite.h"

namespace ondura {

bool RewriteOrPutBack(Files& files, std::string_view path, std::string_view bytes) {
  const auto before = files.Read(path);
  if (files.Write(path, bytes, IfPresent::kReplace)) return true;
  if (before && files.Read(path) != before) files.Write(path, *before, IfPresent::kReplace);
  return false;
}

}  // namespace ondura
