#include "engines/check/check_system.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <map>
#include <utility>

#include "engines/check/CheckMachine.h"
#include "machines/portable/FastClock.h"
#include "machines/win32/Win32Machine.h"
#include "machines/win32/handles.h"
#include "machines/win32/text_edges.h"
// The headers below need what a header above declares.
#include <psapi.h>
#include <tlhelp32.h>
#include <winternl.h>

namespace ondura::check {

namespace fs = std::filesystem;

// Selections name files by the paths that this computer has for them, so all machines share one folder.
const char* const kDocuments = "C:\\OnduraEngineCheck\\Documents\\";
const char* const kDocumentsDrive = "";

namespace {

constexpr const char* kRoot = "C:\\OnduraEngineCheck";

class ThisMachine : public engines::ProgramMachine {
 public:
  const Machine& machine() override { return machine_; }

 private:
  std::unique_ptr<Win32Machine> owner_ = MakeWin32Machine();
  FastClock clock_{owner_->machine().clock};
  Machine machine_ = With(owner_->machine(), clock_);
};

// What the system knows of a process's start, in the process's own memory.
struct StartParameters {
  RTL_USER_PROCESS_PARAMETERS known;
  wchar_t* environment;
};

template <typename Value>
bool ReadMemory(HANDLE process, const void* address, Value& value) {
  return ReadProcessMemory(process, address, &value, sizeof value, nullptr) != FALSE;
}

std::string ReadText(HANDLE process, const wchar_t* address, std::size_t letters) {
  std::wstring text(letters, L'\0');
  SIZE_T read = 0;
  ReadProcessMemory(process, address, text.data(), letters * sizeof(wchar_t), &read);
  text.resize(read / sizeof(wchar_t));
  return FromWide(text);
}

// The letters from an address on to the end of the memory that it is in.
std::size_t LettersAt(HANDLE process, const wchar_t* address) {
  MEMORY_BASIC_INFORMATION region{};
  if (VirtualQueryEx(process, address, &region, sizeof region) == 0) return 0;
  const auto* const end = static_cast<const std::byte*>(region.BaseAddress) + region.RegionSize;
  return static_cast<std::size_t>(end - reinterpret_cast<const std::byte*>(address)) / sizeof(wchar_t);
}

HostProgram LookAt(DWORD id) {
  HostProgram program{static_cast<int>(id), {}, {}, 0};
  const UniqueHandle process{OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, id)};
  PROCESS_MEMORY_COUNTERS memory{};
  if (GetProcessMemoryInfo(process.get(), &memory, sizeof memory))
    program.resident_bytes = memory.WorkingSetSize;
  PROCESS_BASIC_INFORMATION record{};
  PEB block{};
  StartParameters start{};
  if (NT_SUCCESS(NtQueryInformationProcess(process.get(), ProcessBasicInformation, &record, sizeof record,
                                           nullptr)) &&
      ReadMemory(process.get(), record.PebBaseAddress, block) &&
      ReadMemory(process.get(), block.ProcessParameters, start)) {
    const UNICODE_STRING& line = start.known.CommandLine;
    program.command_line = ReadText(process.get(), line.Buffer, line.Length / sizeof(wchar_t));
    program.environment =
        ReadText(process.get(), start.environment, LettersAt(process.get(), start.environment));
  }
  return program;
}

std::vector<std::string> OwnEnvironment() {
  std::vector<std::string> kept;
  for (const char* const name : {"PATH", "SystemRoot", "SystemDrive", "USERPROFILE", "APPDATA",
                                 "LOCALAPPDATA", "ProgramData", "COMPUTERNAME", "USERNAME", "TEMP"}) {
    if (const char* const value = std::getenv(name)) kept.push_back(std::string{name} + "=" + value);
  }
  return kept;
}

}  // namespace

std::string MakeCheckFolder() {
  RemoveCheckFolder(kRoot);  // of a run that was killed
  std::error_code error;
  if (!fs::create_directory(kRoot, error)) {
    throw std::runtime_error(std::string{kRoot} + " can't be made anew: does another check use it?");
  }
  return kRoot;
}

// The library's own way of removing stops at long paths.
void RemoveCheckFolder(const std::string& folder) {
  MakeWin32Machine()->machine().folders.Remove(folder, Removal::kForce);
}

CheckGround MakeCheckGround(const std::string& folder) {
  const std::string install = folder + "\\Install\\";
  const std::string data = folder + "\\Data\\";
  RemoveCheckFolder(kDocuments);
  for (const std::string& path : {install, data, std::string{kDocuments}}) fs::create_directories(path);
  return {.owner = std::make_unique<ThisMachine>(),
          .install = install,
          .data = data,
          .speed = 1,
          .environment = OwnEnvironment()};
}

// Files chosen by their ends are looked for on every drive of the computer, and no path has 4,096 bytes.
bool IsForThisSystem(std::string_view check) { return check != "select.ending" && check != "names.verylong"; }

std::vector<std::string> TroublesomeNames() {
  return {"[brackets] $HOME #hash !bang %TEMP% {x}",
          " blank in front",
          "Übersicht für März €.txt",
          "日本語",
          "'quotes' & ^carets^; a=b, c",
          "-dash",
          std::string(200, 'n')};
}

std::shared_ptr<void> MakeUnreadable(const fs::path& file) {
  UniqueHandle alone{CreateFileW(file.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr)};
  if (!alone.valid()) throw std::runtime_error("can't keep others from " + file.string());
  return std::make_shared<UniqueHandle>(std::move(alone));
}

bool IsRunning(int id) {
  const UniqueHandle process{OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(id))};
  return process.valid() && WaitForSingleObject(process.get(), 0) == WAIT_TIMEOUT;
}

std::vector<HostProgram> ProgramsBelow(int id) {
  std::map<DWORD, std::vector<DWORD>> children;
  const UniqueHandle snapshot{CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0)};
  PROCESSENTRY32W entry{};
  entry.dwSize = sizeof entry;
  for (BOOL more = Process32FirstW(snapshot.get(), &entry); more != FALSE;
       more = Process32NextW(snapshot.get(), &entry)) {
    // The system starts and ends it with a console.
    if (std::wstring_view{entry.szExeFile} == L"conhost.exe") continue;
    children[entry.th32ParentProcessID].push_back(entry.th32ProcessID);
  }
  std::vector<HostProgram> programs;
  std::vector<DWORD> queue{static_cast<DWORD>(id)};
  for (std::size_t at = 0; at < queue.size(); ++at) {
    programs.push_back(LookAt(queue[at]));
    for (const DWORD child : children[queue[at]]) {
      // The number of a parent that has ended may have been given to a child of its child.
      if (std::ranges::find(queue, child) == queue.end()) queue.push_back(child);
    }
  }
  return programs;
}

}  // namespace ondura::check
