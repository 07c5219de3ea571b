#include "machines/win32/ports.h"
#include "machines/win32/system_times.h"

namespace ondura {

namespace {

class Win32Clock : public Clock {
 public:
  LocalTime Now() override {
    SYSTEMTIME now{};
    GetLocalTime(&now);
    return ToLocalTime(now);
  }

  std::chrono::minutes UtcOffset(LocalTime local) override { return UtcOffsetOf(local); }

  void Sleep(std::chrono::milliseconds duration) override {
    if (duration.count() > 0) ::Sleep(static_cast<DWORD>(duration.count()));
  }
};

class Win32MessagePump : public MessagePump {
 public:
  void Pump() override {
    MSG message{};
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
      if (message.message == WM_QUIT) {
        // The end that somebody asked for is for the host's own loop to see.
        PostQuitMessage(static_cast<int>(message.wParam));
        return;
      }
      TranslateMessage(&message);
      DispatchMessageA(&message);
    }
  }
};

}  // namespace

std::unique_ptr<Clock> MakeWin32Clock() { return std::make_unique<Win32Clock>(); }

std::unique_ptr<MessagePump> MakeWin32MessagePump() { return std::make_unique<Win32MessagePump>(); }

}  // namespace ondura
