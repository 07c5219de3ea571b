#include <map>

#include "machines/posix/ports.h"

namespace ondura {

namespace {

constexpr std::chrono::milliseconds kRetryPause{5};
constexpr std::string_view kHexDigits = "0123456789ABCDEF";

// One byte of the lock file each: who has the mutex open, and whose it is.
enum class LockByte : off_t { kOpen = 0, kOwner = 1 };

bool SetLock(const Fd& file, LockByte byte, short kind) {
  struct flock lock {};
  lock.l_type = kind;
  lock.l_whence = SEEK_SET;
  lock.l_start = static_cast<off_t>(byte);
  lock.l_len = 1;
  return fcntl(file.get(), F_OFD_SETLK, &lock) == 0;
}

// Names hold backslashes and what else the mutex's users like.
std::string FileNameOf(std::string_view name) {
  std::string file_name;
  for (const char c : name) {
    const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
    const auto byte = static_cast<unsigned char>(c);
    if (plain) {
      file_name += c;
    } else {
      file_name.append("%").append(1, kHexDigits[byte >> 4U]).append(1, kHexDigits[byte & 0xFU]);
    }
  }
  return file_name;
}

// Mutexes are locks on files of the root, which the host gives back when their holder dies. As on Windows
// the owner may take its mutex again, through any handle, and has to release it as often.
class PosixNamedMutexes : public NamedMutexes {
 public:
  PosixNamedMutexes(const std::string& root, Clock& clock, int speed)
      : folder_(root + "/mutexes"), clock_(clock), speed_(speed) {}

  MutexHandle Create(std::string_view name) override {
    const std::string file_name = FileNameOf(name);
    auto found = mutexes_.find(file_name);
    if (found == mutexes_.end()) {
      mkdir(folder_.c_str(), kNewFolderMode);
      Mutex mutex{OpenHost(folder_ + "/" + file_name, O_RDWR | O_CREAT | O_NOFOLLOW), 0, 0};
      if (!mutex.file.valid() || !Register(mutex)) return 0;
      found = mutexes_.emplace(file_name, std::move(mutex)).first;
    }
    ++found->second.handles;
    handles_[++last_handle_] = file_name;
    return last_handle_;
  }

  bool Wait(MutexHandle handle, std::chrono::milliseconds limit) override {
    Mutex* const mutex = Find(handle);
    if (mutex == nullptr) return false;
    const Deadline deadline{std::chrono::nanoseconds{limit} / speed_};
    while (mutex->owned == 0 && !SetLock(mutex->file, LockByte::kOwner, F_WRLCK)) {
      if (deadline.Left().count() <= 0) return false;
      clock_.Sleep(kRetryPause);
    }
    ++mutex->owned;
    return true;
  }

  void Release(MutexHandle handle) override {
    Mutex* const mutex = Find(handle);
    if (mutex == nullptr || mutex->owned == 0) return;
    if (--mutex->owned == 0) SetLock(mutex->file, LockByte::kOwner, F_UNLCK);
  }

  void Close(MutexHandle handle) override {
    Mutex* const mutex = Find(handle);
    if (mutex == nullptr) return;
    if (--mutex->handles == 0) mutexes_.erase(handles_[handle]);
    handles_.erase(handle);
  }

 private:
  struct Mutex {
    Fd file;
    int handles = 0;
    int owned = 0;  // how often the owner has taken it; 0 for somebody else's
  };

  // Says that the mutex is open here; whoever finds it open nowhere else has made it and owns it.
  static bool Register(Mutex& mutex) {
    const bool is_maker = SetLock(mutex.file, LockByte::kOpen, F_WRLCK);
    if (is_maker && SetLock(mutex.file, LockByte::kOwner, F_WRLCK)) mutex.owned = 1;
    return SetLock(mutex.file, LockByte::kOpen, F_RDLCK) || !is_maker;
  }

  Mutex* Find(MutexHandle handle) {
    const auto name = handles_.find(handle);
    return name == handles_.end() ? nullptr : &mutexes_.at(name->second);
  }

  std::string folder_;
  Clock& clock_;
  int speed_;
  std::map<std::string, Mutex> mutexes_;
  std::map<MutexHandle, std::string> handles_;
  MutexHandle last_handle_ = 0;
};

}  // namespace

std::unique_ptr<NamedMutexes> MakePosixNamedMutexes(const std::string& root, Clock& clock, int speed) {
  return std::make_unique<PosixNamedMutexes>(root, clock, speed);
}

}  // namespace ondura
