#pragma once

#include <string>
#include <string_view>

namespace ondura {

// The system's single-byte code page. Every byte has a character, so bytes survive the way there and back.
//
// On Windows: MultiByteToWideChar and WideCharToMultiByte with CP_ACP.
class CodePage {
 public:
  virtual ~CodePage() = default;

  // Characters that the code page lacks become "?", those outside the first plane one for each of their two
  // UTF-16 units.
  virtual std::string FromUtf8(std::string_view text) = 0;

  // Every byte has a character, so this never fails.
  virtual std::string ToUtf8(std::string_view bytes) = 0;
};

}  // namespace ondura
