#include "StopEvent.h"

#include <algorithm>
#include <string>

#include "HostError.h"

namespace ondura {

namespace {

using Milliseconds = std::chrono::duration<std::int64_t, std::milli>;

constexpr const wchar_t* kWindowClass = L"OnduraHostStop";
constexpr const wchar_t* kStopProperty = L"stop";

// A console handler gets no object of ours, so the event of a process is found by name.
std::wstring EventName(DWORD process_id) { return L"Local\\OnduraHostStop-" + std::to_wstring(process_id); }

UniqueHandle EventOf(DWORD process_id) {
  return UniqueHandle{OpenEventW(SYNCHRONIZE | EVENT_MODIFY_STATE, FALSE, EventName(process_id).c_str())};
}

BOOL WINAPI OnConsole(DWORD) {
  const UniqueHandle event = EventOf(GetCurrentProcessId());
  if (!event.valid()) return FALSE;
  const bool is_second = WaitForSingleObject(event.get(), 0) == WAIT_OBJECT_0;
  if (is_second) return FALSE;
  SetEvent(event.get());
  return TRUE;
}

void DispatchMessages() {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM first, LPARAM second) {
  if (message == WM_CLOSE || (message == WM_ENDSESSION && first != 0)) {
    const auto* stop = static_cast<const StopEvent*>(GetPropW(window, kStopProperty));
    if (stop != nullptr) stop->Request();
    return 0;
  }
  return DefWindowProcW(window, message, first, second);
}

}  // namespace

StopEvent::StopEvent()
    : event_(CreateEventW(nullptr, TRUE, FALSE, EventName(GetCurrentProcessId()).c_str())) {
  if (!event_.valid()) ThrowLastError("can't make the stop event");
}

void StopEvent::Request() const { SetEvent(event_.get()); }

bool StopEvent::Requested() const { return WaitForSingleObject(event_.get(), 0) == WAIT_OBJECT_0; }

void StopEvent::WaitFor(std::chrono::nanoseconds duration) const {
  using Clock = std::chrono::steady_clock;
  const auto end = Clock::now() + duration;
  const HANDLE event = event_.get();
  for (;;) {
    const auto left = std::chrono::ceil<Milliseconds>(end - Clock::now());
    const DWORD wait_ms = static_cast<DWORD>(std::clamp<std::int64_t>(left.count(), 0, INFINITE - 1));
    const DWORD woken = MsgWaitForMultipleObjectsEx(1, &event, wait_ms, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
    if (woken != WAIT_OBJECT_0 + 1) return;
    DispatchMessages();
    if (Clock::now() >= end) return;
  }
}

void RequestStopOf(DWORD process_id) {
  const UniqueHandle event = EventOf(process_id);
  if (event.valid()) SetEvent(event.get());
}

ConsoleStop::ConsoleStop(const StopEvent&) { SetConsoleCtrlHandler(OnConsole, TRUE); }

ConsoleStop::~ConsoleStop() { SetConsoleCtrlHandler(OnConsole, FALSE); }

StopWindow::StopWindow(const StopEvent& stop) {
  WNDCLASSW window_class{};
  window_class.lpfnWndProc = OnMessage;
  window_class.hInstance = GetModuleHandleW(nullptr);
  window_class.lpszClassName = kWindowClass;
  RegisterClassW(&window_class);
  // A message-only window is left out where messages are sent to all, so it is an ordinary one, never shown.
  window_ = CreateWindowExW(0, kWindowClass, L"", WS_OVERLAPPED, 0, 0, 0, 0, nullptr, nullptr,
                            window_class.hInstance, nullptr);
  // A session without a desktop has no windows, and nobody in it who could close one.
  if (window_ == nullptr) return;
  SetPropW(window_, kStopProperty, const_cast<StopEvent*>(&stop));
}

StopWindow::~StopWindow() {
  if (window_ == nullptr) return;
  RemovePropW(window_, kStopProperty);
  DestroyWindow(window_);
}

}  // namespace ondura
