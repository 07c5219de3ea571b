#include "machines/win32/handles.h"
#include "machines/win32/paths.h"
#include "machines/win32/ports.h"
#include "machines/win32/system_times.h"

namespace ondura {

namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// The system's clock moves in steps of up to 15.6 ms; a file system that keeps whole even seconds in steps
// of two seconds. Units of 100 ns.
constexpr std::uint64_t kClockStep = 200'000;
constexpr std::uint64_t kCoarseStep = 20'000'000;

// By what two states of a file differ; all zero if there is no file.
struct FileStamp {
  DWORD volume = 0;
  std::uint64_t index = 0;
  std::uint64_t size = 0;
  std::uint64_t written = 0;

  friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

std::uint64_t Joined(DWORD high, DWORD low) { return (static_cast<std::uint64_t>(high) << 32U) | low; }

// The handle lives for this look only: while one is open, a removed file keeps its name occupied.
FileStamp StampOf(const std::wstring& path) {
  const UniqueHandle file{CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES, kShareAll, nullptr, OPEN_EXISTING,
                                      FILE_ATTRIBUTE_NORMAL, nullptr)};
  BY_HANDLE_FILE_INFORMATION known{};
  if (!file.valid() || !GetFileInformationByHandle(file.get(), &known)) return {};
  return {known.dwVolumeSerialNumber, Joined(known.nFileIndexHigh, known.nFileIndexLow),
          Joined(known.nFileSizeHigh, known.nFileSizeLow), Ticks(known.ftLastWriteTime)};
}

// A write that follows within the same step of the clock would leave the same time.
bool IsFresh(const FileStamp& stamp) {
  if (stamp == FileStamp{}) return false;
  FILETIME now{};
  GetSystemTimeAsFileTime(&now);
  const std::uint64_t step = stamp.written % kCoarseStep == 0 ? kCoarseStep : kClockStep;
  return Ticks(now) < stamp.written + step;
}

class Win32FileWatch : public FileWatch {
 public:
  explicit Win32FileWatch(std::wstring path) : path_(std::move(path)) {}

  bool MayHaveChanged() override {
    const FileStamp stamp = StampOf(path_);
    const bool changed = is_first_ || was_fresh_ || stamp != stamp_;
    is_first_ = false;
    was_fresh_ = IsFresh(stamp);
    stamp_ = stamp;
    return changed;
  }

 private:
  std::wstring path_;
  FileStamp stamp_;
  bool is_first_ = true;
  bool was_fresh_ = false;
};

class Win32FileWatches : public FileWatches {
 public:
  std::unique_ptr<FileWatch> Watch(std::string_view path) override {
    return std::make_unique<Win32FileWatch>(WidePath(path));
  }
};

}  // namespace

std::unique_ptr<FileWatches> MakeWin32FileWatches() { return std::make_unique<Win32FileWatches>(); }

}  // namespace ondura
