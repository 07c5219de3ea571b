#pragma once

#include "machines/win32/windows_api.h"

#include <winternl.h>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace ondura {

// The open handles of this process, out of all that the system has: under Wine GetProcessHandleCount says 0.
inline std::size_t OpenHandles() {
  constexpr auto kBufferTooSmall = static_cast<NTSTATUS>(0xC0000004);
  struct SystemHandle {
    USHORT process;
    USHORT trace;
    UCHAR type;
    UCHAR attributes;
    USHORT value;
    void* object;
    ULONG access;
  };
  std::vector<char> buffer(1 << 16);
  ULONG needed = 0;
  while (NtQuerySystemInformation(SystemHandleInformation, buffer.data(), static_cast<ULONG>(buffer.size()),
                                  &needed) == kBufferTooSmall) {
    buffer.resize(2 * buffer.size());
  }
  const auto* const count = reinterpret_cast<const ULONG*>(buffer.data());
  const auto* const all = reinterpret_cast<const SystemHandle*>(buffer.data() + sizeof(void*));
  return static_cast<std::size_t>(std::count_if(all, all + *count, [](const SystemHandle& one) {
    return one.process == static_cast<USHORT>(GetCurrentProcessId());
  }));
}

}  // namespace ondura
