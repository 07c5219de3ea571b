#pragma once

#include <chrono>
#include <thread>

#include "machines/win32/handles.h"
#include "profile/Installation.h"

namespace ondura {

// Watches the engines that this process has started, from a thread of its own: the host's thread is inside
// the component for as long as a job runs. Past the limit an engine's job is stopped (EngineGuard).
class EngineWatch {
 public:
  // A limit of zero means none.
  EngineWatch(const Installation& installation, std::chrono::milliseconds limit);
  ~EngineWatch();
  EngineWatch(const EngineWatch&) = delete;
  EngineWatch& operator=(const EngineWatch&) = delete;

 private:
  UniqueHandle end_;
  std::thread thread_;
};

}  // namespace ondura
