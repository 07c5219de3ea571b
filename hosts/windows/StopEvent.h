#pragma once

#include <chrono>

#include "machines/win32/handles.h"

namespace ondura {

// The wish that this process leaves, whoever has it: the service manager, a person at the console or the end
// of the session.
class StopEvent {
 public:
  StopEvent();

  void Request() const;
  [[nodiscard]] bool Requested() const;

  // Dispatches window messages for `duration`, or until a stop is requested: the component's apartment lives
  // by them.
  void WaitFor(std::chrono::nanoseconds duration) const;

 private:
  UniqueHandle event_;
};

// Asks another host of this session to leave, by the id of its process.
void RequestStopOf(DWORD process_id);

// Turns Ctrl+C, Ctrl+Break and the closing of the console into a request while it lives; a second Ctrl+C
// leaves at once.
class ConsoleStop {
 public:
  explicit ConsoleStop(const StopEvent& stop);
  ~ConsoleStop();
  ConsoleStop(const ConsoleStop&) = delete;
  ConsoleStop& operator=(const ConsoleStop&) = delete;
};

// A hidden window that turns WM_CLOSE, which taskkill and setup programs send, and the end of the session
// into a request.
class StopWindow {
 public:
  explicit StopWindow(const StopEvent& stop);
  ~StopWindow();
  StopWindow(const StopWindow&) = delete;
  StopWindow& operator=(const StopWindow&) = delete;

 private:
  HWND window_;  // null in a session without a desktop
};

}  // namespace ondura
