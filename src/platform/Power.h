#pragma once

#include <cstdint>

namespace ondura {

// Flags of ExitWindowsEx.
inline constexpr std::uint32_t kExitPowerOff = 8;
inline constexpr std::uint32_t kExitForce = 4;

// The end of Windows.
class Power {
 public:
  virtual ~Power() = default;

  // ExitWindowsEx without a reason. The caller has enabled "SeShutdownPrivilege". False if
  // the system refuses.
  virtual bool ExitWindows(std::uint32_t flags) = 0;
};

}  // namespace ondura
