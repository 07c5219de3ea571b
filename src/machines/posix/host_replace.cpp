#include "machines/posix/host_replace.h"

#include <sys/file.h>
#include <unistd.h>

#include <chrono>

#include "machines/posix/host_time.h"
#include "platform/Files.h"

namespace ondura {

namespace {

// A process that was stopped in the middle of a change may not hold all others up for good.
constexpr int kLockTries = 200;
constexpr std::chrono::milliseconds kLockPause{10};

// Where the new content of a file is written. Whoever has the folder may take what a kill has left there.
std::string PlaceBeside(const std::string& target, const FolderLock& lock) {
  const std::size_t name = target.rfind('/') + 1;
  std::string beside = target.substr(0, name).append(kNewContentPrefix).append(target, name);
  if (!lock.held()) beside.append(".").append(std::to_string(getpid()));
  return beside;
}

void RemoveHost(const std::string& path) {
  const HostPlace place{path};
  unlinkat(place.folder(), place.name(), 0);
}

bool RenameHost(const std::string& from, const std::string& to) {
  const HostPlace source{from};
  const HostPlace target{to};
  return renameat(source.folder(), source.name(), target.folder(), target.name()) == 0;
}

bool WriteNewFile(const std::string& path, std::string_view bytes, const struct stat* old, OnDisk when) {
  RemoveHost(path);
  const mode_t mode = old == nullptr ? kNewFileMode : old->st_mode & 07777U;
  Fd file = OpenHost(path, O_WRONLY | O_CREAT | O_EXCL, mode);
  if (!file.valid()) return false;
  if (old != nullptr) {
    // Only the superuser can give a file away, and some file systems have no rights to set; the change
    // counts more than either.
    [[maybe_unused]] const int owner = fchown(file.get(), old->st_uid, old->st_gid);
    [[maybe_unused]] const int rights = fchmod(file.get(), mode);
  }
  const bool written = WriteAll(file, bytes) && (when == OnDisk::kSoon || fdatasync(file.get()) == 0);
  return file.Close() && written;
}

}  // namespace

FolderLock::FolderLock(const std::string& host_file)
    : folder_(OpenHost(host_file.substr(0, host_file.rfind('/')), O_RDONLY | O_DIRECTORY)) {
  for (int i = 0; folder_.valid() && !held_ && i < kLockTries; ++i) {
    if (i > 0) Deadline{kLockPause}.SleepUntil();
    held_ = flock(folder_.get(), LOCK_EX | LOCK_NB) == 0;
  }
}

bool WriteBeside(const std::string& target, std::string_view bytes, const FolderLock& lock, OnDisk when) {
  const std::string beside = PlaceBeside(target, lock);
  const auto old = StatLink(target);
  if (WriteNewFile(beside, bytes, old ? &*old : nullptr, when) && RenameHost(beside, target)) return true;
  RemoveHost(beside);
  return false;
}

bool WriteInPlace(const Fd& file, std::string_view bytes) {
  struct stat status {};
  if (fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return false;
  const auto size = static_cast<off_t>(bytes.size());
  if (size > status.st_size && posix_fallocate(file.get(), status.st_size, size - status.st_size) != 0) {
    [[maybe_unused]] const int restored = ftruncate(file.get(), status.st_size);
    return false;
  }
  return lseek(file.get(), 0, SEEK_SET) == 0 && WriteAll(file, bytes) && ftruncate(file.get(), size) == 0;
}

bool ReplaceContent(const Fd& old, std::string_view bytes) {
  struct stat status {};
  if (fstat(old.get(), &status) != 0 || !S_ISREG(status.st_mode)) return false;
  const std::string path = RealPathOf(old);
  const auto there = StatLink(path);
  const bool is_alone = there && there->st_ino == status.st_ino && status.st_nlink == 1;
  if (is_alone && WriteBeside(path, bytes, FolderLock{path}, OnDisk::kFirst)) return true;
  return WriteInPlace(old, bytes);
}

}  // namespace ondura
