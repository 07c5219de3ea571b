#pragma once

#include <chrono>
#include <cstdint>
#include <string_view>

namespace ondura {

using MutexHandle = std::int32_t;  // 0 is none

// Mutexes that processes share by name.
//
// On Windows: CreateMutexA with initial ownership requested, WaitForSingleObject, ReleaseMutex, CloseHandle.
class NamedMutexes {
 public:
  virtual ~NamedMutexes() = default;

  // 0 on failure. The caller owns the mutex only if this call made it.
  virtual MutexHandle Create(std::string_view name) = 0;

  // True when the mutex is the caller's within `limit`.
  virtual bool Wait(MutexHandle handle, std::chrono::milliseconds limit) = 0;

  virtual void Release(MutexHandle handle) = 0;

  virtual void Close(MutexHandle handle) = 0;
};

}  // namespace ondura
