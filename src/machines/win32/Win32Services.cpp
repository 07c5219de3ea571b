#include "machines/win32/handles.h"
#include "machines/win32/ports.h"
#include "machines/win32/text_edges.h"

namespace ondura {

namespace {

constexpr DWORD kServiceAccess = 0xF01FF;

struct ServiceHandle {
  using Value = SC_HANDLE;
  static bool IsValid(Value handle) { return handle != nullptr; }
  static void Close(Value handle) { CloseServiceHandle(handle); }
};

using UniqueService = Unique<ServiceHandle>;

class Win32Services : public Services {
 public:
  int State(std::string_view service_name, ServiceManagerAccess access) override {
    const UniqueService manager{OpenSCManagerA(nullptr, "ServicesActive", static_cast<DWORD>(access))};
    if (!manager.valid()) return 0;
    const UniqueService service{OpenServiceA(manager.get(), ToSystem(service_name).c_str(), kServiceAccess)};
    SERVICE_STATUS status{};
    const bool known = service.valid() && QueryServiceStatus(service.get(), &status);
    return known ? static_cast<int>(status.dwCurrentState) : 0;
  }
};

}  // namespace

std::unique_ptr<Services> MakeWin32Services() { return std::make_unique<Win32Services>(); }

}  // namespace ondura
