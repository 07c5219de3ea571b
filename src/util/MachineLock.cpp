#include "util/MachineLock.h"

namespace ondura {

MachineLock::MachineLock(NamedMutexes& mutexes, std::chrono::milliseconds limit)
    : mutexes_(mutexes),
      mutex_(mutexes.Create("Global\\OnduraEService machine files")),
      held_(mutex_ != 0 && mutexes.Wait(mutex_, limit)) {}

// Who made it has owned it since, and once more by the wait; a release too many is nothing.
MachineLock::~MachineLock() {
  if (held_) mutexes_.Release(mutex_);
  if (held_) mutexes_.Release(mutex_);
  if (mutex_ != 0) mutexes_.Close(mutex_);
}

}  // namespace ondura
