#pragma once

#include <string>

namespace ondura {

// The fields of GetVersionExA that the component looks at.
struct SystemVersion {
  int platform_id = 0;  // 1 the oldest systems, 2 the NT family
  int major = 0;
  int minor = 0;
  bool is_workstation = true;  // product type VER_NT_WORKSTATION
};

// On Windows: GetVersionExA, IsWow64Process on the current process, the size of a pointer and
// GetComputerNameA.
class SystemInfo {
 public:
  virtual ~SystemInfo() = default;

  // All fields as they are by default if the system can't say.
  virtual SystemVersion Version() = 0;

  // True for a 32-bit process on a 64-bit system.
  virtual bool IsWow64() = 0;

  // True on a 64-bit system, whatever the size of this process. IsWow64 is false in a 64-bit process.
  virtual bool Is64Bit() = 0;

  // At most 15 characters; empty on failure.
  virtual std::string ComputerName() = 0;
};

}  // namespace ondura
