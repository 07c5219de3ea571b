#include "TemporaryFolder.h"

#include "machines/win32/Win32Machine.h"
#include "machines/win32/paths.h"
#include "machines/win32/text_edges.h"
#include "machines/win32/windows_api.h"

namespace ondura {

TemporaryFolder::TemporaryFolder() {
  const auto owner = MakeWin32Machine();
  wchar_t temporary[MAX_PATH] = {};
  GetTempPathW(MAX_PATH, temporary);
  const std::string parent = owner->machine().drives.LongPath(FromWide(temporary));
  int number = 0;
  do {
    path_ = parent + "Ondura test " + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(++number);
  } while (!owner->machine().folders.Make(path_));
}

TemporaryFolder::~TemporaryFolder() { MakeWin32Machine()->machine().folders.Remove(path_, Removal::kForce); }

bool IsWine() { return GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version") != nullptr; }

bool PutFolderLink(std::string_view path, std::string_view folder) {
  const std::wstring link = ToWide(path);
  const std::wstring target = ToWide(folder);
  std::wstring program;
  std::wstring command = L"cmd /c mklink /J \"" + link + L"\" \"" + target + L"\"";
  if (IsWine()) {
    using GetHostName = char* (*)(const wchar_t*);
    const auto host_name = reinterpret_cast<GetHostName>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("kernel32.dll"), "wine_get_unix_file_name")));
    if (host_name == nullptr) return false;
    program = L"\\\\?\\unix\\bin\\ln";
    command =
        L"ln -s \"" + ToWide(host_name(target.c_str())) + L"\" \"" + ToWide(host_name(link.c_str())) + L"\"";
  }
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION started{};
  CreateProcessW(program.empty() ? nullptr : program.c_str(), command.data(), nullptr, nullptr, FALSE,
                 CREATE_NO_WINDOW, nullptr, nullptr, &startup, &started);
  // A program of Wine's host has no handle to wait for.
  for (int look = 0; look < 500 && !IsFolder(link); ++look) Sleep(10);
  return IsFolder(link);
}

std::string FolderOfTests() {
  wchar_t path[MAX_PATH] = {};
  const std::wstring_view whole{path, GetModuleFileNameW(nullptr, path, MAX_PATH)};
  return FromWide(whole.substr(0, whole.rfind(L'\\') + 1));
}

LaunchRequest PutTool(std::string_view path, std::chrono::milliseconds lifetime, int exit_code) {
  const std::wstring from = WidePath(FolderOfTests() + "win32_tool.exe");
  CopyFileW(from.c_str(), WidePath(path).c_str(), FALSE);
  const std::string folder{path.substr(0, path.rfind('\\'))};
  return {std::string{path}, "/s " + std::to_string(lifetime.count()) + " " + std::to_string(exit_code),
          folder, 0, "open"};
}

}  // namespace ondura
