#include "engines/common/NameList.h"

namespace ondura::engines {

namespace {

constexpr std::size_t kMostHeldBytes = 65536;

}  // namespace

void NameList::Add(std::string_view path) {
  text_.append(path).append(kLineEnd);
  if (text_.size() >= kMostHeldBytes) Flush();
}

void NameList::Close() {
  if (!is_begun_ || !text_.empty()) Flush();
}

void NameList::Flush() {
  TextFiles& files = client_.text_files();
  if (is_begun_) {
    files.Append(path_, text_, Encoding::kUtf16, IfMissing::kCreate);
  } else {
    files.Write(path_, text_, Encoding::kUtf16);
  }
  is_begun_ = true;
  text_.clear();
}

}  // namespace ondura::engines
