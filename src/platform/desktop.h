#pragma once

#include <cstdint>
#include <string_view>

#include "platform/processes.h"

namespace ondura {

using WindowHandle = std::int32_t;

enum class MessageIcon { kNone, kStop };

// The person's desktop: boxes and windows.
class Desktop {
 public:
  virtual ~Desktop() = default;

  // Shows the text and does not wait for an answer: nobody may be there to give one. On Windows:
  // WTSSendMessageA to the active session.
  virtual void ShowMessage(std::string_view text, std::string_view title, MessageIcon icon) = 0;

  // GetWindowThreadProcessId. 0 for a window that is gone.
  virtual ProcessId ProcessOfWindow(WindowHandle window) = 0;
};

}  // namespace ondura
