#include "machines/posix/host_io.h"

#include <dirent.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstring>
#include <limits>
#include <memory>

#include "machines/posix/host_time.h"

namespace ondura {

namespace {

constexpr std::size_t kReadStepBytes = std::size_t{256} * 1024;
constexpr std::size_t kReadEndBytes = std::size_t{4} * 1024;
constexpr std::size_t kListBufferBytes = std::size_t{32} * 1024;

// Kernels stamp files with the time of their last tick, ten milliseconds ago at the most.
constexpr std::int64_t kTickNs = 20'000'000;

// File systems without fractions of a second keep every other one.
constexpr std::int64_t kCoarseNs = 2'000'000'000;
constexpr std::int64_t kSecondNs = 1'000'000'000;

// The kernel's record of one directory entry; the C library has no name for it.
struct KernelEntry {
  std::uint64_t inode;
  std::int64_t offset;
  std::uint16_t length;
  unsigned char type;
  char name[1];
};

std::optional<struct stat> StatAt(const std::string& path, int flags) {
  const HostPlace place{path};
  struct stat status {};
  if (fstatat(place.folder(), place.name(), &status, flags) != 0) return std::nullopt;
  return status;
}

// The name under which the host shows an open file to this process; to open it again is to open the same
// file, whatever happens to its path.
std::string OwnName(const Fd& file) { return "/proc/self/fd/" + std::to_string(file.get()); }

bool IsSelfOrParent(const char* name) {
  return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

}  // namespace

HostError TranslateError(int error_number) {
  switch (error_number) {
    case 0:
      return HostError::kNone;
    case ENOENT:
    case ENOTDIR:
      return HostError::kMissing;
    case EEXIST:
      return HostError::kPresent;
    case EINTR:
      return HostError::kInterrupted;
    case EAGAIN:
      return HostError::kBusy;
    case ELOOP:
      return HostError::kLink;
    default:
      return HostError::kOther;
  }
}

HostError LastError() { return TranslateError(errno); }

Fd& Fd::operator=(Fd&& other) noexcept {
  if (this != &other) {
    Close();
    number_ = std::exchange(other.number_, -1);
  }
  return *this;
}

Fd::~Fd() { Close(); }

bool Fd::Close() {
  const int number = std::exchange(number_, -1);
  return number < 0 || close(number) == 0;
}

HostPlace::HostPlace(const std::string& path) : name_(path.c_str()) {
  for (std::size_t begin = 0; path.size() - begin >= PATH_MAX;) {
    const std::size_t end = path.rfind('/', begin + PATH_MAX - 1);
    if (end == std::string::npos || end <= begin) return;  // a name that no file system takes
    const std::string part = path.substr(begin, end - begin);
    folder_ = Fd{openat(folder(), part.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)};
    begin = end + 1;
    // The empty name is missing for every call.
    name_ = folder_.valid() ? path.c_str() + begin : "";
    if (!folder_.valid()) return;
  }
}

int HostPlace::folder() const { return folder_.valid() ? folder_.get() : AT_FDCWD; }

Fd OpenHost(const std::string& path, int flags, mode_t mode) {
  const HostPlace place{path};
  int number = -1;
  do {
    number = openat(place.folder(), place.name(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, mode);
  } while (number < 0 && LastError() == HostError::kInterrupted);
  return Fd{number};
}

std::optional<std::string> ReadRest(const Fd& file, std::size_t limit_bytes) {
  struct stat status {};
  if (fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  std::string bytes;
  // The size is only a first guess: the file may grow while it is read, and some report none.
  auto step = std::min(limit_bytes, std::max<std::size_t>(static_cast<std::size_t>(status.st_size) + 1, 1));
  while (bytes.size() < limit_bytes) {
    const std::size_t have = bytes.size();
    const std::size_t asked = std::min(step, limit_bytes - have);
    bytes.resize(have + asked);
    const ssize_t got = read(file.get(), bytes.data() + have, asked);
    bytes.resize(have + static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    if (got < 0 && LastError() != HostError::kInterrupted) return std::nullopt;
    if (got == 0) break;
    // After a guess that was right only the end is still to be seen.
    step = have + asked == bytes.size() ? kReadStepBytes : kReadEndBytes;
  }
  return bytes;
}

bool WriteAll(const Fd& file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(file.get(), bytes.data(), bytes.size());
    if (written < 0 && LastError() == HostError::kInterrupted) continue;
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

std::optional<struct stat> StatHost(const std::string& path) { return StatAt(path, 0); }

std::optional<struct stat> StatLink(const std::string& path) { return StatAt(path, AT_SYMLINK_NOFOLLOW); }

std::string RealPathOf(const Fd& file) {
  std::array<char, PATH_MAX> path{};
  const ssize_t length = readlink(OwnName(file).c_str(), path.data(), path.size());
  return length > 0 ? std::string{path.data(), static_cast<std::size_t>(length)} : std::string{};
}

bool IsWithin(const Fd& file, const std::string& folder) {
  const std::string real_folder = RealPathOf(OpenHost(folder, O_PATH | O_DIRECTORY));
  return !real_folder.empty() && (RealPathOf(file) + "/").starts_with(real_folder + "/");
}

Fd OpenWithin(const std::string& folder, const std::string& path, int flags) {
  Fd file = OpenHost(path, flags | O_NOFOLLOW);
  if (file.valid() || LastError() != HostError::kLink) return file;
  const Fd target = OpenHost(path, O_PATH);
  if (!target.valid()) return Fd{};
  if (IsWithin(target, folder)) return OpenHost(OwnName(target), flags & ~(O_CREAT | O_EXCL));
  errno = EACCES;
  return Fd{};
}

std::optional<struct stat> StatWithin(const std::string& folder, const std::string& path) {
  const auto link = StatLink(path);
  if (!link || !S_ISLNK(link->st_mode)) return link;
  const Fd target = OpenHost(path, O_PATH);
  struct stat status {};
  if (!target.valid() || fstat(target.get(), &status) != 0) return std::nullopt;
  // A link to a folder is a way that somebody set up, such as the machine's data on another disk.
  if (S_ISDIR(status.st_mode) || IsWithin(target, folder)) return status;
  errno = EACCES;
  return std::nullopt;
}

FileStamp StampOf(const struct stat& status) {
  return {status.st_dev, status.st_ino, status.st_size, ToNanoseconds(status.st_mtim).count(),
          ToNanoseconds(status.st_ctim).count()};
}

bool IsFresh(const FileStamp& stamp) {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  const std::int64_t granularity = stamp.changed_ns % kSecondNs == 0 ? kCoarseNs : kTickNs;
  const std::int64_t written = std::max(stamp.modified_ns, stamp.changed_ns);
  return ToNanoseconds(now).count() - written < granularity;
}

bool ListHost(const Fd& folder, const std::function<bool(const HostEntry&)>& visit) {
  const auto buffer = std::make_unique_for_overwrite<char[]>(kListBufferBytes);
  while (true) {
    const long got = syscall(SYS_getdents64, folder.get(), buffer.get(), kListBufferBytes);
    if (got <= 0) return got == 0;
    for (long at = 0; at < got;) {
      const char* const record = buffer.get() + at;
      std::uint16_t length = 0;
      std::memcpy(&length, record + offsetof(KernelEntry, length), sizeof length);
      const HostEntry entry{record + offsetof(KernelEntry, name),
                            static_cast<unsigned char>(record[offsetof(KernelEntry, type)])};
      if (!IsSelfOrParent(entry.name) && !visit(entry)) return true;
      at += length;
    }
  }
}

}  // namespace ondura
