#pragma once

#include <cstdint>
#include <string_view>

namespace ondura {

// Rights that the service manager is opened with: GENERIC_READ or SC_MANAGER_ALL_ACCESS.
enum class ServiceManagerAccess : std::uint32_t { kRead = 0x80000000, kAll = 0xF003F };

// On Windows: OpenSCManagerA on "ServicesActive", OpenServiceA with access 0xF01FF, QueryServiceStatus.
class Services {
 public:
  virtual ~Services() = default;

  // 1 stopped, 2 starting, 3 stopping, 4 running, 5 continuing, 6 pausing, 7 paused; 0 on any failure.
  virtual int State(std::string_view service_name, ServiceManagerAccess access) = 0;
};

}  // namespace ondura
