#include "EngineWatch.h"

#include "machines/win32/windows_api.h"

#include <tlhelp32.h>

#include "EngineGuard.h"
#include "machines/win32/Win32Machine.h"
#include "machines/win32/handles.h"
#include "machines/win32/text_edges.h"
#include "text/text.h"

namespace ondura {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kLook{10'000};

// The program of that name among those that this process has started; 0 for none.
ProcessId FindChild(std::string_view name) {
  const UniqueHandle snapshot{CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0)};
  PROCESSENTRY32W process{};
  process.dwSize = sizeof process;
  if (!snapshot.valid() || !Process32FirstW(snapshot.get(), &process)) return 0;
  do {
    const bool is_child = process.th32ParentProcessID == GetCurrentProcessId();
    if (is_child && EqualsIgnoringCase(FromWide(process.szExeFile), name)) return process.th32ProcessID;
  } while (Process32NextW(snapshot.get(), &process));
  return 0;
}

void Watch(const UniqueHandle& end, const Installation& installation, milliseconds limit) {
  const auto owner = MakeWin32Machine();
  EngineGuard guard(owner->machine(), installation, limit);
  ProcessId watched = 0;
  while (WaitForSingleObject(end.get(), static_cast<DWORD>(kLook.count())) == WAIT_TIMEOUT) {
    const ProcessId engine = FindChild(installation.ClientExe);
    if (engine == 0) {
      guard.Forget();
    } else if (engine != watched) {
      guard.Watch(engine);
    } else {
      guard.Spent(kLook);
    }
    watched = engine;
  }
}

}  // namespace

EngineWatch::EngineWatch(const Installation& installation, milliseconds limit)
    : end_(CreateEventW(nullptr, TRUE, FALSE, nullptr)),
      thread_([this, installation, limit] { Watch(end_, installation, limit); }) {}

EngineWatch::~EngineWatch() {
  SetEvent(end_.get());
  thread_.join();
}

}  // namespace ondura
