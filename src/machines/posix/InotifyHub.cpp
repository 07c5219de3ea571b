#include "machines/posix/InotifyHub.h"

#include <linux/magic.h>
#include <signal.h>
#include <sys/inotify.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>

#include "machines/posix/host_names.h"
#include "machines/posix/signal_counters.h"

namespace ondura {

namespace {

constexpr std::uint32_t kNotices = IN_MODIFY | IN_ATTRIB | IN_CLOSE_WRITE | IN_CREATE | IN_DELETE |
                                   IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;
constexpr std::uint32_t kFolderGone = IN_IGNORED | IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT;

constexpr std::size_t kQueueBytes = 16384;

constexpr long kCifsMagic = 0xFF534D42L;
constexpr long kPlan9Magic = 0x01021997L;

void CountFileChange(int /*signal_number*/) { signal_counters.file_changes.fetch_add(1); }

void ListenForSignal() {
  struct sigaction action {};
  action.sa_handler = CountFileChange;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  sigaction(SIGIO, &action, nullptr);
  sigset_t set;
  sigemptyset(&set);
  sigaddset(&set, SIGIO);
  sigprocmask(SIG_UNBLOCK, &set, nullptr);
}

// Other machines write to such file systems without a notice here.
bool IsShared(const std::string& host_folder) {
  struct statfs system {};
  if (statfs(host_folder.c_str(), &system) != 0) return true;
  constexpr std::array<long, 6> kShared = {NFS_SUPER_MAGIC, SMB_SUPER_MAGIC,  SMB2_SUPER_MAGIC,
                                           kCifsMagic,      FUSE_SUPER_MAGIC, kPlan9Magic};
  return std::ranges::find(kShared, static_cast<long>(system.f_type)) != kShared.end();
}

}  // namespace

InotifyHub::InotifyHub() : queue_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
  if (!queue_.valid()) return;
  ListenForSignal();
  const bool signals =
      fcntl(queue_.get(), F_SETOWN, getpid()) == 0 && fcntl(queue_.get(), F_SETFL, O_NONBLOCK | O_ASYNC) == 0;
  if (!signals) queue_.Close();
}

InotifyHub::~InotifyHub() = default;

bool InotifyHub::Add(const std::string& host_folder, Target& target) {
  if (!queue_.valid() || IsShared(host_folder)) return false;
  target.folder_watch = inotify_add_watch(queue_.get(), host_folder.c_str(), kNotices);
  if (target.folder_watch < 0) return false;
  targets_[target.folder_watch].push_back(&target);
  return true;
}

void InotifyHub::Remove(Target& target) {
  const auto found = targets_.find(target.folder_watch);
  if (found == targets_.end()) return;
  std::erase(found->second, &target);
  if (!found->second.empty()) return;
  inotify_rm_watch(queue_.get(), target.folder_watch);
  targets_.erase(found);
}

void InotifyHub::Collect() {
  const std::uint32_t raised = signal_counters.file_changes.load();
  if (raised == seen_) return;
  // Taken before the queue is emptied: what arrives meanwhile raises the count again.
  seen_ = raised;
  alignas(inotify_event) std::array<char, kQueueBytes> buffer;
  while (true) {
    const ssize_t got = read(queue_.get(), buffer.data(), buffer.size());
    if (got <= 0 && LastError() == HostError::kInterrupted) continue;
    if (got <= 0) return;
    for (std::size_t at = 0; at < static_cast<std::size_t>(got);) {
      inotify_event event{};
      std::memcpy(&event, buffer.data() + at, sizeof event);
      Take(event.wd, event.mask, event.len == 0 ? "" : buffer.data() + at + sizeof event);
      at += sizeof event + event.len;
    }
  }
}

void InotifyHub::Take(int folder_watch, std::uint32_t what, std::string_view name) {
  if ((what & IN_Q_OVERFLOW) != 0) {
    for (auto& [watch, targets] : targets_) {
      for (Target* const target : targets) target->changed = true;
    }
    return;
  }
  const auto found = targets_.find(folder_watch);
  if (found == targets_.end()) return;
  std::string scratch;
  const std::string folded = FoldedName(WindowsName(name, scratch));
  for (Target* const target : found->second) {
    const bool gone = (what & kFolderGone) != 0;
    target->lost = target->lost || gone;
    target->changed = target->changed || gone || target->folded_name == folded;
  }
}

}  // namespace ondura
