#include "machines/posix/HostProcess.h"

#include <poll.h>
#include <signal.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>
#include <string_view>

#include "machines/posix/host_time.h"

namespace ondura {

namespace {

using std::chrono::nanoseconds;

// A killed process needs a moment to go; who has ended it does not want to find it in the table any more.
constexpr std::chrono::seconds kKillLimit{1};

// What a shell reports for a program that a signal ended.
constexpr int kSignalExitBase = 128;

Fd OpenProcess(pid_t id) { return Fd{static_cast<int>(syscall(SYS_pidfd_open, id, 0))}; }

std::uint32_t CodeOf(const siginfo_t& info) {
  return static_cast<std::uint32_t>(info.si_code == CLD_EXITED ? info.si_status
                                                               : kSignalExitBase + info.si_status);
}

}  // namespace

HostProcess::HostProcess(pid_t id, Kinship kinship) : id_(id), kinship_(kinship), handle_(OpenProcess(id)) {}

bool HostProcess::HasEnded() { return WaitForEnd(nanoseconds{0}); }

bool HostProcess::WaitForEnd(nanoseconds limit) {
  if (ended_) return true;
  const Deadline deadline{limit};
  while (true) {
    pollfd question{handle_.get(), POLLIN, 0};
    const timespec left = ToTimespec(std::max(deadline.Left(), nanoseconds{0}));
    const int answer = ppoll(&question, 1, &left, nullptr);
    if (answer < 0 && LastError() == HostError::kInterrupted) continue;
    if (answer <= 0) return false;
    Collect();
    return true;
  }
}

// The descriptor goes as soon as it has told all: nobody need close a handle for it.
void HostProcess::Collect() {
  if (kinship_ == Kinship::kChild) {
    siginfo_t info{};
    const bool told = waitid(P_PIDFD, static_cast<id_t>(handle_.get()), &info, WEXITED | WNOHANG) == 0;
    if (told && info.si_pid == id_) exit_code_ = CodeOf(info);
  }
  if (forced_code_) exit_code_ = *forced_code_;
  ended_ = true;
  handle_.Close();
}

bool HostProcess::Kill(std::uint32_t exit_code) {
  if (HasEnded()) return false;
  if (syscall(SYS_pidfd_send_signal, handle_.get(), SIGKILL, nullptr, 0) != 0) return false;
  forced_code_ = exit_code;
  WaitForEnd(kKillLimit);
  return true;
}

std::optional<std::string> ExecutableOf(pid_t id) {
  constexpr std::string_view kDeleted = " (deleted)";
  const std::string link = "/proc/" + std::to_string(id) + "/exe";
  std::array<char, PATH_MAX> buffer;
  const ssize_t length = readlink(link.c_str(), buffer.data(), buffer.size());
  if (length <= 0) return std::nullopt;
  std::string_view path{buffer.data(), static_cast<std::size_t>(length)};
  if (path.ends_with(kDeleted)) path.remove_suffix(kDeleted.size());
  return std::string{path};
}

std::optional<std::string> CommandOf(pid_t id) {
  const Fd file = OpenHost("/proc/" + std::to_string(id) + "/cmdline", O_RDONLY);
  std::array<char, PATH_MAX> buffer{};
  const ssize_t length = file.valid() ? read(file.get(), buffer.data(), buffer.size() - 1) : 0;
  if (length <= 0) return std::nullopt;
  return std::string{buffer.data()};
}

}  // namespace ondura
