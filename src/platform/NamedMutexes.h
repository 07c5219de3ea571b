#pragma once

#include <chrono>
#include <cstdint>
#include <string_view>

namespace ondura {

using MutexHandle = std::int32_t;  // 0 means no mutex

// Mutexes that processes share by name.
//
// On Windows: CreateMutexA with initial ownership requested, WaitForSingleObject, ReleaseMutex, CloseHandle.
class NamedMutexes {
 public:
  virtual ~NamedMutexes() = default;

  // 0 on failure. The caller owns the mutex only if this call made it.
  virtual MutexHandle Create(std::string_view name) = 0;

  // True if the caller got the mutex within `limit`. False for handle 0.
  virtual bool Wait(MutexHandle handle, std::chrono::milliseconds limit) = 0;

  // Both ignore handle 0 and a mutex that the caller does not own.
  virtual void Release(MutexHandle handle) = 0;

  virtual void Close(MutexHandle handle) = 0;
};

}  // namespace ondura
