#include "machines/win32/windows_api.h"
// Needs what the header above declares.
#include <aclapi.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <utility>

#include "machines/win32/handles.h"
#include "machines/win32/paths.h"
#include "machines/win32/ports.h"
#include "machines/win32/system_times.h"
#include "machines/win32/text_edges.h"

namespace ondura {

namespace {

// Nothing is locked against other processes.
constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

constexpr std::size_t kMostBytesPerCall = std::size_t{1} << 26U;

UniqueHandle Open(std::string_view path, DWORD access, DWORD disposition, DWORD sharing = kShareAll) {
  return UniqueHandle{CreateFileW(WidePath(path).c_str(), access, sharing, nullptr, disposition,
                                  FILE_ATTRIBUTE_NORMAL, nullptr)};
}

// Only the right to append, so that two writers of one trace file never meet at one offset.
UniqueHandle OpenToAppend(std::string_view path, IfMissing if_missing) {
  return Open(path, FILE_APPEND_DATA | SYNCHRONIZE,
              if_missing == IfMissing::kCreate ? OPEN_ALWAYS : OPEN_EXISTING);
}

UniqueHandle OpenToWrite(std::string_view path, IfPresent if_present) {
  return Open(path, GENERIC_WRITE, if_present == IfPresent::kReplace ? CREATE_ALWAYS : CREATE_NEW);
}

bool WriteAll(const UniqueHandle& file, std::string_view bytes) {
  if (!file.valid()) return false;
  while (!bytes.empty()) {
    const auto asked = static_cast<DWORD>(std::min(bytes.size(), kMostBytesPerCall));
    DWORD written = 0;
    if (!WriteFile(file.get(), bytes.data(), asked, &written, nullptr) || written == 0) return false;
    bytes.remove_prefix(written);
  }
  return true;
}

std::size_t SizeToRead(const UniqueHandle& file, std::size_t limit_bytes) {
  LARGE_INTEGER size{};
  if (!GetFileSizeEx(file.get(), &size)) return 0;
  return static_cast<std::size_t>(
      std::min<std::uint64_t>(static_cast<std::uint64_t>(size.QuadPart), limit_bytes));
}

bool MoveTo(const UniqueHandle& file, std::uint64_t offset) {
  LARGE_INTEGER distance{};
  distance.QuadPart = static_cast<LONGLONG>(offset);
  return file.valid() && SetFilePointerEx(file.get(), distance, nullptr, FILE_BEGIN);
}

// At most `limit_bytes` bytes from the file's present position.
std::optional<std::string> ReadRest(const UniqueHandle& file, std::size_t limit_bytes) {
  if (!file.valid()) return std::nullopt;
  std::string bytes(SizeToRead(file, limit_bytes), '\0');
  std::size_t filled = 0;
  while (filled < bytes.size()) {
    const auto asked = static_cast<DWORD>(std::min(bytes.size() - filled, kMostBytesPerCall));
    DWORD count = 0;
    if (!ReadFile(file.get(), bytes.data() + filled, asked, &count, nullptr)) return std::nullopt;
    if (count == 0) break;
    filled += count;
  }
  bytes.resize(filled);
  return bytes;
}

// The attributes of a file; nothing for a folder or where nothing is.
std::optional<WIN32_FILE_ATTRIBUTE_DATA> FileData(std::string_view path) {
  WIN32_FILE_ATTRIBUTE_DATA data{};
  const bool is_file = GetFileAttributesExW(WidePath(path).c_str(), GetFileExInfoStandard, &data) &&
                       (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
  return is_file ? std::optional{data} : std::nullopt;
}

// The path with its name as the folder spells it, since the file takes the name that it is replaced under.
std::wstring AsSpelled(const std::wstring& path) {
  WIN32_FIND_DATAW found{};
  const UniqueFileSearch search{FindFirstFileW(path.c_str(), &found)};
  return search.valid() ? path.substr(0, path.find_last_of(L"\\/") + 1).append(found.cFileName) : path;
}

std::wstring PlaceBeside(const std::wstring& target) {
  const std::size_t name = target.find_last_of(L"\\/") + 1;
  return target.substr(0, name).append(ToWide(kNewContentPrefix)).append(target, name);
}

// One name alone leads to the file, and it is no link.
bool IsAlone(const UniqueHandle& file) {
  BY_HANDLE_FILE_INFORMATION status{};
  return GetFileInformationByHandle(file.get(), &status) && status.nNumberOfLinks == 1 &&
         (status.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0;
}

// Gives the file that is there the content of `beside`; its rights stay. The system may have removed the
// target already when it fails.
bool TakeNameOf(const std::wstring& target, const std::wstring& beside) {
  constexpr DWORD kWhateverElse = REPLACEFILE_IGNORE_MERGE_ERRORS | REPLACEFILE_IGNORE_ACL_ERRORS;
  if (ReplaceFileW(target.c_str(), beside.c_str(), nullptr, kWhateverElse, nullptr, nullptr)) return true;
  return GetFileAttributesW(target.c_str()) == INVALID_FILE_ATTRIBUTES &&
         MoveFileExW(beside.c_str(), target.c_str(), MOVEFILE_WRITE_THROUGH);
}

// Held alone, so that two processes that replace one file do not mix their contents.
bool WriteBeside(const std::wstring& target, std::string_view bytes) {
  const std::wstring beside = PlaceBeside(target);
  bool is_written = false;
  {
    const UniqueHandle file{CreateFileW(beside.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                        FILE_ATTRIBUTE_NORMAL, nullptr)};
    if (!file.valid()) return false;
    is_written = WriteAll(file, bytes) && FlushFileBuffers(file.get());
  }
  if (is_written && TakeNameOf(target, beside)) return true;
  DeleteFileW(beside.c_str());
  return false;
}

bool SetSize(const UniqueHandle& file, std::uint64_t size_bytes) {
  return MoveTo(file, size_bytes) && SetEndOfFile(file.get());
}

// Over what is there, with the room that it needs set aside first, and cut to its length last.
bool WriteInPlace(const UniqueHandle& file, std::string_view bytes) {
  LARGE_INTEGER old{};
  if (!file.valid() || !GetFileSizeEx(file.get(), &old)) return false;
  const auto old_bytes = static_cast<std::uint64_t>(old.QuadPart);
  if (bytes.size() > old_bytes && !SetSize(file, bytes.size())) return false;
  return MoveTo(file, 0) && WriteAll(file, bytes) && SetSize(file, bytes.size());
}

struct LocalMemory {
  void operator()(void* memory) const { LocalFree(memory); }
};

bool IsOwnAccount(PSID account) {
  UniqueHandle token;
  if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, token.Receive())) return false;
  alignas(TOKEN_USER) std::array<std::byte, sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE> user{};
  DWORD size = 0;
  return GetTokenInformation(token.get(), TokenUser, user.data(), static_cast<DWORD>(user.size()), &size) &&
         EqualSid(account, reinterpret_cast<const TOKEN_USER*>(user.data())->User.Sid);
}

bool IsTrustedOwner(const UniqueHandle& file) {
  PSID owner = nullptr;
  PSECURITY_DESCRIPTOR found = nullptr;
  if (!file.valid() || GetSecurityInfo(file.get(), SE_FILE_OBJECT, OWNER_SECURITY_INFORMATION, &owner,
                                       nullptr, nullptr, nullptr, &found) != ERROR_SUCCESS) {
    return false;
  }
  const std::unique_ptr<void, LocalMemory> held{found};
  return owner != nullptr && (IsWellKnownSid(owner, WinLocalSystemSid) ||
                              IsWellKnownSid(owner, WinBuiltinAdministratorsSid) || IsOwnAccount(owner));
}

class Win32FileWriter : public FileWriter {
 public:
  explicit Win32FileWriter(UniqueHandle file) : file_(std::move(file)) {}
  bool Append(std::string_view bytes) override { return WriteAll(file_, bytes); }

 private:
  UniqueHandle file_;
};

std::unique_ptr<FileWriter> WriterOn(UniqueHandle file) {
  return file.valid() ? std::make_unique<Win32FileWriter>(std::move(file)) : nullptr;
}

class Win32Files : public Files {
 public:
  bool Exists(std::string_view path) override { return FileData(path).has_value(); }

  std::optional<std::uint64_t> Size(std::string_view path) override {
    const auto data = FileData(path);
    if (!data) return std::nullopt;
    return (static_cast<std::uint64_t>(data->nFileSizeHigh) << 32U) | data->nFileSizeLow;
  }

  std::optional<LocalTime> Modified(std::string_view path) override {
    const auto data = FileData(path);
    return data ? std::optional{ToLocalTime(data->ftLastWriteTime)} : std::nullopt;
  }

  std::optional<std::string> Read(std::string_view path) override {
    return ReadHead(path, std::numeric_limits<std::size_t>::max());
  }

  std::optional<std::string> ReadAlone(std::string_view path) override {
    return ReadRest(Open(path, GENERIC_READ, OPEN_EXISTING, FILE_SHARE_READ),
                    std::numeric_limits<std::size_t>::max());
  }

  std::optional<std::string> ReadTrusted(std::string_view path) override {
    const UniqueHandle file = Open(path, GENERIC_READ, OPEN_EXISTING);
    return IsTrustedOwner(file) ? ReadRest(file, std::numeric_limits<std::size_t>::max()) : std::nullopt;
  }

  std::optional<std::string> ReadHead(std::string_view path, std::size_t limit_bytes) override {
    return ReadRest(Open(path, GENERIC_READ, OPEN_EXISTING), limit_bytes);
  }

  std::optional<std::string> ReadPart(std::string_view path, std::uint64_t offset,
                                      std::size_t limit_bytes) override {
    const UniqueHandle file = Open(path, GENERIC_READ, OPEN_EXISTING);
    return MoveTo(file, offset) ? ReadRest(file, limit_bytes) : std::nullopt;
  }

  bool Write(std::string_view path, std::string_view bytes, IfPresent if_present) override {
    if (if_present == IfPresent::kFail || !Exists(path))
      return WriteAll(OpenToWrite(path, if_present), bytes);
    UniqueHandle old = Open(path, GENERIC_WRITE, OPEN_EXISTING);
    if (!old.valid()) return false;
    if (!IsAlone(old)) return WriteInPlace(old, bytes);
    old = UniqueHandle{};
    return WriteBeside(AsSpelled(WidePath(path)), bytes) ||
           WriteInPlace(Open(path, GENERIC_WRITE, OPEN_EXISTING), bytes);
  }

  bool Append(std::string_view path, std::string_view bytes, IfMissing if_missing) override {
    return WriteAll(OpenToAppend(path, if_missing), bytes);
  }

  bool Patch(std::string_view path, std::uint64_t offset, std::string_view bytes) override {
    const UniqueHandle file = Open(path, GENERIC_WRITE, OPEN_EXISTING);
    return MoveTo(file, offset) && WriteAll(file, bytes);
  }

  std::unique_ptr<FileWriter> OpenWriter(std::string_view path, IfPresent if_present) override {
    return WriterOn(OpenToWrite(path, if_present));
  }

  std::unique_ptr<FileWriter> OpenAppender(std::string_view path, IfMissing if_missing) override {
    return WriterOn(OpenToAppend(path, if_missing));
  }

  bool Remove(std::string_view path, Removal removal) override {
    const auto data = FileData(path);
    if (!data) return false;
    const std::wstring wide = WidePath(path);
    const bool is_protected = (data->dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0;
    if (is_protected && removal == Removal::kForce) SetFileAttributesW(wide.c_str(), FILE_ATTRIBUTE_NORMAL);
    return DeleteFileW(wide.c_str()) != FALSE;
  }

  bool Copy(std::string_view from, std::string_view to) override {
    return CopyFileW(WidePath(from).c_str(), WidePath(to).c_str(), FALSE) != FALSE;
  }
};

}  // namespace

std::unique_ptr<Files> MakeWin32Files() { return std::make_unique<Win32Files>(); }

}  // namespace ondura
