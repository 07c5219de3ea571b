#include "machines/posix/StopSignals.h"

#include <poll.h>
#include <unistd.h>

#include "machines/posix/host_time.h"
#include "machines/posix/signal_counters.h"

namespace ondura {

namespace {

// What a shell reports for a program that a signal ended.
constexpr int kSignalExitBase = 128;

void CountStopRequest(int signal_number) {
  if (signal_counters.stop_requests.fetch_add(1) > 0) _exit(kSignalExitBase + signal_number);
}

sigset_t StopSet() {
  sigset_t set;
  sigemptyset(&set);
  sigaddset(&set, SIGTERM);
  sigaddset(&set, SIGINT);
  return set;
}

}  // namespace

StopSignals::StopSignals() {
  signal_counters.stop_requests = 0;
  struct sigaction action {};
  action.sa_handler = CountStopRequest;
  action.sa_flags = SA_RESTART;
  action.sa_mask = StopSet();
  sigaction(SIGTERM, &action, &old_terminate_);
  sigaction(SIGINT, &action, &old_interrupt_);
  // A program that was started with HoldStopSignals gets what came in between now.
  const sigset_t stop_set = StopSet();
  sigprocmask(SIG_UNBLOCK, &stop_set, nullptr);
}

StopSignals::~StopSignals() {
  sigaction(SIGTERM, &old_terminate_, nullptr);
  sigaction(SIGINT, &old_interrupt_, nullptr);
}

void HoldStopSignals() {
  const sigset_t stop_set = StopSet();
  sigprocmask(SIG_BLOCK, &stop_set, nullptr);
}

bool StopSignals::Requested() const { return signal_counters.stop_requests != 0; }

void StopSignals::WaitFor(std::chrono::nanoseconds duration) const {
  // The signals are held back between the look at the counter and the wait, so that none is slept through.
  const sigset_t stop_set = StopSet();
  sigset_t old_set;
  sigprocmask(SIG_BLOCK, &stop_set, &old_set);
  const Deadline deadline{duration};
  for (auto left = deadline.Left(); left.count() > 0 && !Requested(); left = deadline.Left()) {
    const timespec limit = ToTimespec(left);
    ppoll(nullptr, 0, &limit, &old_set);
  }
  sigprocmask(SIG_SETMASK, &old_set, nullptr);
}

}  // namespace ondura
