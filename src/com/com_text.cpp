#include "com/com_text.h"

#include <utility>

#include "text/utf16.h"

namespace ondura {

Bstr::Bstr(std::string_view utf8) : text_(nullptr) {
  const std::string bytes = ToUtf16(utf8);
  text_ = SysAllocStringLen(nullptr, static_cast<UINT>(bytes.size() / sizeof(OLECHAR)));
  if (text_ == nullptr) throw ComError{E_OUTOFMEMORY};
  bytes.copy(reinterpret_cast<char*>(text_), bytes.size());
}

BSTR Bstr::release() { return std::exchange(text_, nullptr); }

std::string TextOf(const OLECHAR* text, UINT units) {
  return FromUtf16({reinterpret_cast<const char*>(text), units * sizeof(OLECHAR)});
}

}  // namespace ondura
