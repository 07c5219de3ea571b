#include <algorithm>
#include <map>

#include "machines/win32/handles.h"
#include "machines/win32/ports.h"
#include "machines/win32/text_edges.h"

namespace ondura {

namespace {

// The platform gives a mutex to a thread; every caller of the component is on the one thread.
class Win32NamedMutexes : public NamedMutexes {
 public:
  MutexHandle Create(std::string_view name) override {
    UniqueHandle mutex{CreateMutexA(nullptr, TRUE, ToSystem(name).c_str())};
    if (!mutex.valid()) return 0;
    const MutexHandle handle = HandleToLong(mutex.get());
    held_[handle] = std::move(mutex);
    return handle;
  }

  bool Wait(MutexHandle handle, std::chrono::milliseconds limit) override {
    const auto held = held_.find(handle);
    if (held == held_.end()) return false;
    const auto limit_ms = static_cast<DWORD>(std::max<std::chrono::milliseconds::rep>(limit.count(), 0));
    const DWORD result = WaitForSingleObject(held->second.get(), limit_ms);
    // An owner that died without a release leaves the mutex to the next one.
    return result == WAIT_OBJECT_0 || result == WAIT_ABANDONED;
  }

  void Release(MutexHandle handle) override {
    const auto held = held_.find(handle);
    if (held != held_.end()) ReleaseMutex(held->second.get());
  }

  void Close(MutexHandle handle) override { held_.erase(handle); }

 private:
  std::map<MutexHandle, UniqueHandle> held_;
};

}  // namespace

std::unique_ptr<NamedMutexes> MakeWin32NamedMutexes() { return std::make_unique<Win32NamedMutexes>(); }

}  // namespace ondura
