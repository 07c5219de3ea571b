#include "machines/win32/console_events.h"

#include <string>

#include "machines/win32/handles.h"

namespace ondura {

namespace {

std::wstring MetName() { return L"Local\\ondura-break-" + std::to_wstring(GetCurrentProcessId()); }

// The event that is meant for the child comes to this process too. The system calls this on a thread of its
// own.
BOOL WINAPI IgnoreEvent(DWORD) {
  const UniqueHandle met{OpenEventW(EVENT_MODIFY_STATE, FALSE, MetName().c_str())};
  if (met.valid()) SetEvent(met.get());
  return TRUE;
}

}  // namespace

ChildConsole ConsoleForChild() {
  DWORD process = 0;
  return GetConsoleProcessList(&process, 1) > 1 ? ChildConsole::kShared : ChildConsole::kOwn;
}

void SendBreak(DWORD process, ChildConsole console) {
  if (console == ChildConsole::kShared) {
    GenerateConsoleCtrlEvent(CTRL_BREAK_EVENT, process);
    return;
  }
  // Without letting go first there is no other console, even where the own one is gone.
  FreeConsole();
  if (!AttachConsole(process)) return;
  // Letting go takes the handler away: so not before the event has come here.
  constexpr DWORD kPatience = 1000;
  const UniqueHandle met{CreateEventW(nullptr, TRUE, FALSE, MetName().c_str())};
  SetConsoleCtrlHandler(IgnoreEvent, TRUE);
  // Wine does not know Ctrl+Break.
  const bool is_sent =
      GenerateConsoleCtrlEvent(CTRL_BREAK_EVENT, 0) || GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0);
  if (is_sent) WaitForSingleObject(met.get(), kPatience);
  SetConsoleCtrlHandler(IgnoreEvent, FALSE);
  FreeConsole();
}

}  // namespace ondura
