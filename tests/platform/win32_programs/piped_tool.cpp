// A program at the end of pipes. Does what its arguments say, one after the other:
//
//   out:TEXT err:TEXT   prints the text        in            prints what comes in
//   file:NAME           prints the file that the variable NAME names
//   value:NAME          prints the variable NAME
//   folder              prints its working folder
//   copy:MS             starts a copy of itself that sleeps and holds the pipes
//   sleep:MS            sleeps                  exit:CODE     leaves
//   wait                prints "begun", waits for Ctrl+Break or Ctrl+C, prints "asked" and leaves with 5
//   deaf                the same, and goes on waiting after it

#include <windows.h>

#include <shellapi.h>

#include <cwchar>
#include <string>

namespace {

void Print(DWORD stream, const std::string& text) {
  DWORD written = 0;
  WriteFile(GetStdHandle(stream), text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

void PrintWide(const std::wstring& text, DWORD stream = STD_OUTPUT_HANDLE) {
  std::string bytes(text.size() * 3, '\0');
  bytes.resize(static_cast<std::size_t>(
      WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), bytes.data(),
                          static_cast<int>(bytes.size()), nullptr, nullptr)));
  Print(stream, bytes);
}

void PrintAllOf(HANDLE file) {
  char chunk[4096];
  for (DWORD length = 0; ReadFile(file, chunk, sizeof chunk, &length, nullptr) && length > 0;) {
    Print(STD_OUTPUT_HANDLE, {chunk, length});
  }
}

BOOL WINAPI Leave(DWORD event) {
  const bool is_asked = event == CTRL_BREAK_EVENT || event == CTRL_C_EVENT;
  Print(STD_OUTPUT_HANDLE, is_asked ? "asked\n" : "another event\n");
  ExitProcess(5);
}

BOOL WINAPI Stay(DWORD) { return TRUE; }

void Wait(PHANDLER_ROUTINE handler) {
  SetConsoleCtrlHandler(handler, TRUE);
  Print(STD_OUTPUT_HANDLE, "begun\n");
  Sleep(60'000);
}

std::wstring Variable(const std::wstring& name) {
  wchar_t value[MAX_PATH] = {};
  return {value, GetEnvironmentVariableW(name.c_str(), value, MAX_PATH)};
}

void StartCopy(const std::wstring& time) {
  wchar_t path[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  std::wstring command = L"copy sleep:" + time;
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION started{};
  CreateProcessW(path, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &started);
}

void Do(const std::wstring& step) {
  const std::wstring verb = step.substr(0, step.find(L':'));
  const std::wstring value = verb.size() < step.size() ? step.substr(verb.size() + 1) : L"";
  if (verb == L"out") PrintWide(value);
  if (verb == L"err") PrintWide(value, STD_ERROR_HANDLE);
  if (verb == L"in") PrintAllOf(GetStdHandle(STD_INPUT_HANDLE));
  if (verb == L"file") {
    PrintAllOf(CreateFileW(Variable(value).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  }
  if (verb == L"value") PrintWide(value + L"=" + Variable(value) + L"\n");
  if (verb == L"folder") {
    wchar_t folder[MAX_PATH] = {};
    PrintWide({folder, GetCurrentDirectoryW(MAX_PATH, folder)});
  }
  if (verb == L"copy") StartCopy(value);
  if (verb == L"sleep") Sleep(static_cast<DWORD>(_wtoi(value.c_str())));
  if (verb == L"exit") ExitProcess(static_cast<UINT>(_wtoi(value.c_str())));
  if (verb == L"wait") Wait(Leave);
  if (verb == L"deaf") Wait(Stay);
}

}  // namespace

int main() {
  int count = 0;
  wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
  for (int i = 1; i < count; ++i) Do(words[i]);
  return 0;
}
