#include "ElevatedKeeper.h"

#include <array>
#include <utility>

#include "HostError.h"
#include "StopEvent.h"
#include "machines/win32/text_edges.h"

namespace ondura {

namespace {

constexpr DWORD kPauseMs = 60'000;
constexpr DWORD kPatienceMs = 30'000;

// Ends the host with the last handle, but not the tools that the host has started.
UniqueHandle MakeJob() {
  UniqueHandle job{CreateJobObjectW(nullptr, nullptr)};
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
  limits.BasicLimitInformation.LimitFlags =
      JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE | JOB_OBJECT_LIMIT_SILENT_BREAKAWAY_OK;
  SetInformationJobObject(job.get(), JobObjectExtendedLimitInformation, &limits, sizeof limits);
  return job;
}

struct Started {
  UniqueHandle process;
  DWORD id = 0;
};

Started Start(const std::string& command_line) {
  std::wstring line = ToWide(command_line);
  STARTUPINFOW how{};
  how.cb = sizeof how;
  PROCESS_INFORMATION what{};
  if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr, nullptr, &how,
                     &what) == FALSE) {
    ThrowLastError("can't start " + command_line);
  }
  const UniqueHandle thread{what.hThread};
  return {UniqueHandle{what.hProcess}, what.dwProcessId};
}

}  // namespace

ElevatedKeeper::ElevatedKeeper(std::string command_line, const Reporter& reporter)
    : command_line_(std::move(command_line)),
      reporter_(reporter),
      leave_(CreateEventW(nullptr, TRUE, FALSE, nullptr)),
      job_(MakeJob()),
      thread_([this] { Keep(); }) {}

ElevatedKeeper::~ElevatedKeeper() {
  SetEvent(leave_.get());
  thread_.join();
}

void ElevatedKeeper::Keep() {
  do {
    try {
      RunOnce();
    } catch (const HostError& error) {
      if (!std::exchange(has_reported_, true)) reporter_.Error(error.what());
    }
  } while (WaitForSingleObject(leave_.get(), kPauseMs) == WAIT_TIMEOUT);
}

void ElevatedKeeper::RunOnce() {
  const Started host = Start(command_line_);
  AssignProcessToJobObject(job_.get(), host.process.get());
  const std::array<HANDLE, 2> either{leave_.get(), host.process.get()};
  WaitForMultipleObjects(2, either.data(), FALSE, INFINITE);
  RequestStopOf(host.id);
  // A wait for a tool has no limit, and the service manager is waiting.
  if (WaitForSingleObject(host.process.get(), kPatienceMs) == WAIT_TIMEOUT) {
    TerminateProcess(host.process.get(), static_cast<UINT>(kExitFailure));
  }
}

}  // namespace ondura
