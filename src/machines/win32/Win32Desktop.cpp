#include "machines/win32/ports.h"
#include "machines/win32/text_edges.h"
#include "machines/win32/windows_api.h"

#include <wtsapi32.h>

namespace ondura {

namespace {

constexpr DWORD kNoSession = 0xFFFFFFFF;

HWND SystemWindow(WindowHandle window) { return static_cast<HWND>(LongToHandle(window)); }

class Win32Desktop : public Desktop {
 public:
  void ShowMessage(std::string_view text, std::string_view title, MessageIcon icon) override {
    const DWORD session = WTSGetActiveConsoleSessionId();
    if (session == kNoSession) return;
    std::string shown_title = ToSystem(title);
    std::string shown_text = ToSystem(text);
    const DWORD style = MB_OK | (icon == MessageIcon::kStop ? MB_ICONSTOP : 0);
    DWORD answer = 0;
    WTSSendMessageA(WTS_CURRENT_SERVER_HANDLE, session, shown_title.data(),
                    static_cast<DWORD>(shown_title.size()), shown_text.data(),
                    static_cast<DWORD>(shown_text.size()), style, 0, &answer, FALSE);
  }

  ProcessId ProcessOfWindow(WindowHandle window) override {
    DWORD id = 0;
    GetWindowThreadProcessId(SystemWindow(window), &id);
    return id;
  }

  WindowHandle FindTopWindow(std::string_view window_class, std::string_view title) override {
    return HandleToLong(FindWindowA(ToSystem(window_class).c_str(), ToSystem(title).c_str()));
  }

  bool Show(WindowHandle window, WindowShow how) override {
    return ShowWindow(SystemWindow(window), static_cast<int>(how)) != FALSE;
  }

  bool Post(WindowHandle window, std::uint32_t message) override {
    // The null window means this thread, which is nobody's window.
    return window != 0 && PostMessageA(SystemWindow(window), message, 0, 0) != FALSE;
  }
};

class Win32Power : public Power {
 public:
  bool ExitWindows(std::uint32_t flags) override { return ExitWindowsEx(flags, 0) != FALSE; }
};

}  // namespace

std::unique_ptr<Desktop> MakeWin32Desktop() { return std::make_unique<Win32Desktop>(); }

std::unique_ptr<Power> MakeWin32Power() { return std::make_unique<Win32Power>(); }

}  // namespace ondura
