#pragma once

#include <string>
#include <string_view>

#include "com/automation.h"
#include "com/com_error.h"

namespace ondura {

// A text that Automation owns, freed with this object.
class Bstr {
 public:
  explicit Bstr(std::string_view utf8);
  ~Bstr() { SysFreeString(text_); }
  Bstr(const Bstr&) = delete;
  Bstr& operator=(const Bstr&) = delete;

  [[nodiscard]] BSTR get() const { return text_; }

  // Hands the text over to the caller of the component.
  BSTR release();

 private:
  BSTR text_;
};

// UTF-8 of a text that stays the caller's. Null is the empty text.
std::string TextOf(const OLECHAR* text, UINT units);
inline std::string TextOf(BSTR text) { return TextOf(text, SysStringLen(text)); }

}  // namespace ondura
