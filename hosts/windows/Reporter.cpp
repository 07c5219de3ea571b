#include "Reporter.h"

#include <cstdio>
#include <iostream>
#include <memory>
#include <utility>

#include "machines/win32/text_edges.h"
#include "machines/win32/windows_api.h"

namespace ondura {

namespace {

struct EventSourceCloser {
  void operator()(HANDLE source) const { DeregisterEventSource(source); }
};
using EventSource = std::unique_ptr<void, EventSourceCloser>;

bool IsOpen(DWORD stream) {
  const HANDLE handle = GetStdHandle(stream);
  return handle != nullptr && handle != INVALID_HANDLE_VALUE && GetFileType(handle) != FILE_TYPE_UNKNOWN;
}

}  // namespace

void Reporter::Error(std::string_view message) const { Say(Kind::kError, message); }

void Reporter::Note(std::string_view message) const { Say(Kind::kNote, message); }

void Reporter::Say(Kind kind, std::string_view message) const {
  if (place_ == Place::kConsole) {
    std::cerr << source_ << ": " << message << std::endl;
    return;
  }
  const EventSource source{RegisterEventSourceW(nullptr, ToWide(source_).c_str())};
  if (!source) return;
  const std::wstring text = ToWide(message);
  const wchar_t* texts[] = {text.c_str()};
  const WORD type = kind == Kind::kError ? EVENTLOG_ERROR_TYPE : EVENTLOG_INFORMATION_TYPE;
  ReportEventW(source.get(), type, 0, 0, nullptr, 1, 0, static_cast<const wchar_t**>(texts), nullptr);
}

Reporter UsualReporter(std::string source) {
  return {std::move(source), UseParentConsole() ? Reporter::Place::kConsole : Reporter::Place::kEventLog};
}

bool UseParentConsole() {
  if (IsOpen(STD_ERROR_HANDLE)) return true;
  if (AttachConsole(ATTACH_PARENT_PROCESS) == FALSE) return false;
  const bool opened = std::freopen("CONOUT$", "w", stdout) != nullptr;
  return std::freopen("CONOUT$", "w", stderr) != nullptr && opened;
}

}  // namespace ondura
