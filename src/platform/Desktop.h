#pragma once

#include <cstdint>
#include <string_view>

#include "platform/Processes.h"

namespace ondura {

using WindowHandle = std::int32_t;

enum class MessageIcon { kNone, kStop };

// How a window is shown, as the platform numbers it.
enum class WindowShow { kHide = 0, kNormal = 1 };

// The message that asks a window to close (WM_CLOSE).
inline constexpr std::uint32_t kCloseMessage = 0x10;

// The person's desktop: boxes and windows.
class Desktop {
 public:
  virtual ~Desktop() = default;

  // Shows the text and does not wait for an answer, since nobody may be there to give one. Does nothing if
  // nobody is logged on. On Windows: WTSSendMessageA to the active session.
  virtual void ShowMessage(std::string_view text, std::string_view title, MessageIcon icon) = 0;

  // GetWindowThreadProcessId. 0 for a window that is gone.
  virtual ProcessId ProcessOfWindow(WindowHandle window) = 0;

  // FindWindowA: a top-level window of this class and with exactly this title, letter case ignored. 0 if
  // there is no such window.
  virtual WindowHandle FindTopWindow(std::string_view window_class, std::string_view title) = 0;

  // ShowWindow. False when the window was hidden before, or is gone.
  virtual bool Show(WindowHandle window, WindowShow how) = 0;

  // PostMessageA without further values: puts the message into the window's queue and does not wait. False
  // for a window that is gone.
  virtual bool Post(WindowHandle window, std::uint32_t message) = 0;
};

}  // namespace ondura
