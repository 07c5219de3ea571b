#include "platform/posix/host_io.h"

#include <dirent.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <limits>
#include <memory>

#include "platform/posix/host_time.h"

namespace ondura {

namespace {

constexpr std::size_t kReadStepBytes = std::size_t{256} * 1024;
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

Fd OpenHost(const std::string& path, int flags, mode_t mode) {
  int number = -1;
  do {
    number = open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, mode);
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
    bytes.resize(have + std::min(step, limit_bytes - have));
    const ssize_t got = read(file.get(), bytes.data() + have, bytes.size() - have);
    bytes.resize(have + static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    if (got < 0 && LastError() != HostError::kInterrupted) return std::nullopt;
    if (got == 0) break;
    step = kReadStepBytes;
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

std::optional<struct stat> StatHost(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) return std::nullopt;
  return status;
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
