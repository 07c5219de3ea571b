#include "engines/common/HostProcess.h"

#include "machines/win32/handles.h"
// The headers below need what the header above declares.
#include <shellapi.h>
#include <tlhelp32.h>

#include <vector>

#include "text/text.h"

namespace ondura::engines {

namespace {

DWORD ParentId() {
  const UniqueHandle snapshot{CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0)};
  PROCESSENTRY32W entry{};
  entry.dwSize = sizeof entry;
  for (BOOL more = Process32FirstW(snapshot.get(), &entry); more != FALSE;
       more = Process32NextW(snapshot.get(), &entry)) {
    if (entry.th32ProcessID == GetCurrentProcessId()) return entry.th32ParentProcessID;
  }
  return 0;
}

// An id may be given to another process once its owner has ended, so the process is held open.
class Parent : public HostProcess {
 public:
  bool IsThere() override {
    return process_.valid() && WaitForSingleObject(process_.get(), 0) == WAIT_TIMEOUT;
  }

 private:
  const UniqueHandle process_{OpenProcess(SYNCHRONIZE, FALSE, ParentId())};
};

std::string ToUtf8(const wchar_t* text) {
  const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
  if (size <= 1) return {};
  std::string utf8(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text, -1, utf8.data(), size, nullptr, nullptr);
  utf8.pop_back();
  return utf8;
}

}  // namespace

// The words that main gets are in the code page of the system, which may lack characters of a path.
std::vector<std::string> ParameterWords(int, const char* const*) {
  int count = 0;
  const std::unique_ptr<LPWSTR, decltype(&LocalFree)> wide{CommandLineToArgvW(GetCommandLineW(), &count),
                                                           &LocalFree};
  std::vector<std::string> words;
  for (int at = 1; wide && at < count; ++at) words.push_back(ToUtf8(wide.get()[at]));
  return words;
}

std::string ParameterText(int count, const char* const* words) {
  return Join(ParameterWords(count, words), " ");
}

std::uint32_t OwnProcessId() { return GetCurrentProcessId(); }

std::unique_ptr<HostProcess> WatchHost() { return std::make_unique<Parent>(); }

}  // namespace ondura::engines
