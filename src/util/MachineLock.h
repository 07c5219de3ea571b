#pragma once

#include <chrono>

#include "platform/NamedMutexes.h"

namespace ondura {

// Held while a schedule file, a list of users or a selection is read, changed and written back, so that two
// of this system's own programs never write over each other's change. Other programs know nothing of it: what
// keeps them and the component apart stays the order of single reads and writes. It is not to be nested, and
// the system frees it when its holder is killed.
class MachineLock {
 public:
  // Longer than the component holds it, whose catch-up of a schedule may pause.
  static constexpr std::chrono::milliseconds kPatienceOfAPerson{20'000};
  // The component goes on without it then: a program that was stopped in the middle must not stop the
  // backups.
  static constexpr std::chrono::milliseconds kPatienceOfAHost{5'000};

  MachineLock(NamedMutexes& mutexes, std::chrono::milliseconds limit);
  ~MachineLock();
  MachineLock(const MachineLock&) = delete;
  MachineLock& operator=(const MachineLock&) = delete;

  // False if somebody else kept it for the whole time, or the machine gave no mutex.
  [[nodiscard]] bool held() const { return held_; }

 private:
  NamedMutexes& mutexes_;
  MutexHandle mutex_;
  bool held_;
};

}  // namespace ondura
