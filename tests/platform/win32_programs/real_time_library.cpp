// Stands in for the client's continuous backup: appends what it is told to a file beside it.

#include <windows.h>

#include <string>

namespace {

void Note(const std::string& line) {
  HMODULE own = nullptr;
  GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<const char*>(&Note), &own);
  std::string path(MAX_PATH, '\0');
  path.resize(GetModuleFileNameA(own, path.data(), MAX_PATH));
  const HANDLE file = CreateFileA((path + ".txt").c_str(), FILE_APPEND_DATA, FILE_SHARE_READ, nullptr,
                                  OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  DWORD written = 0;
  WriteFile(file, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
  CloseHandle(file);
}

}  // namespace

extern "C" __declspec(dllexport) void WINAPI PostCDPStatusMsg(LONG state) {
  Note("state " + std::to_string(state) + "\n");
}

extern "C" __declspec(dllexport) void WINAPI ValidateLocalDBDllVersion() { Note("validate\n"); }
