#include "service_process.h"

#include <mutex>
#include <optional>
#include <string>

#include "ElevatedKeeper.h"
#include "HostError.h"
#include "Reporter.h"
#include "machines/win32/text_edges.h"
#include "machines/win32/windows_api.h"
#include "product.h"
#include "scheduling_host.h"
#include "service_options.h"

namespace ondura {

namespace {

// How long the manager may wait for the next word of a service that is starting or stopping.
constexpr DWORD kWaitHintMs = 30'000;

// The service as its manager sees it.
class ManagedService {
 public:
  explicit ManagedService(const std::string& name)
      : handle_(RegisterServiceCtrlHandlerExW(ToWide(name).c_str(), OnControl, this)) {
    if (handle_ == nullptr) ThrowLastError("can't meet the service manager");
  }
  ManagedService(const ManagedService&) = delete;
  ManagedService& operator=(const ManagedService&) = delete;

  [[nodiscard]] const StopEvent& stop() const { return stop_; }

  // Called by the service's own thread and by the manager's. A stop that was reported is not taken back by a
  // start that ends after it.
  void Report(DWORD state, int exit_code = 0) {
    const std::scoped_lock lock(mutex_);
    if (status_.dwCurrentState == SERVICE_STOP_PENDING && state != SERVICE_STOPPED)
      state = SERVICE_STOP_PENDING;
    status_.dwServiceType = SERVICE_WIN32_OWN_PROCESS;
    status_.dwCurrentState = state;
    status_.dwControlsAccepted = state == SERVICE_RUNNING ? SERVICE_ACCEPT_STOP | SERVICE_ACCEPT_SHUTDOWN : 0;
    status_.dwWin32ExitCode = exit_code == 0 ? NO_ERROR : ERROR_SERVICE_SPECIFIC_ERROR;
    status_.dwServiceSpecificExitCode = static_cast<DWORD>(exit_code);
    const bool is_pending = state == SERVICE_START_PENDING || state == SERVICE_STOP_PENDING;
    status_.dwWaitHint = is_pending ? kWaitHintMs : 0;
    status_.dwCheckPoint = is_pending ? status_.dwCheckPoint + 1 : 0;
    SetServiceStatus(handle_, &status_);
  }

 private:
  // Runs on the manager's thread. The tick that is running ends first; the host then reports the stop.
  static DWORD WINAPI OnControl(DWORD control, DWORD, void*, void* context) {
    auto& service = *static_cast<ManagedService*>(context);
    switch (control) {
      case SERVICE_CONTROL_STOP:
      case SERVICE_CONTROL_SHUTDOWN:
        service.Report(SERVICE_STOP_PENDING);
        service.stop_.Request();
        return NO_ERROR;
      case SERVICE_CONTROL_INTERROGATE:
        return NO_ERROR;
      default:
        return ERROR_CALL_NOT_IMPLEMENTED;
    }
  }

  StopEvent stop_;
  std::mutex mutex_;
  SERVICE_STATUS status_{};  // under the mutex
  SERVICE_STATUS_HANDLE handle_;
};

// The manager hands over the name that the service was started by.
void WINAPI ServiceMain(DWORD, wchar_t** words) {
  const std::string name = FromWide(words[0]);
  const Reporter reporter(name, Reporter::Place::kEventLog);
  Guard(reporter, [&] {
    ManagedService service(name);
    service.Report(SERVICE_START_PENDING);
    const auto parsed = ParseServiceOptions();
    int code = parsed.exit_code;
    if (parsed.options) {
      code = Guard(reporter, [&] {
        std::optional<ElevatedKeeper> elevated;
        RunScheduling(*parsed.options, service.stop(), reporter, [&] {
          elevated.emplace(ElevatedCommandLine(*parsed.options), reporter);
          service.Report(SERVICE_RUNNING);
        });
        return 0;
      });
    }
    service.Report(SERVICE_STOPPED, code);
    return code;
  });
}

}  // namespace

void RunServiceProcess() {
  // A process of one service may leave its name empty here.
  wchar_t any_name[] = L"";
  const SERVICE_TABLE_ENTRYW table[] = {{static_cast<wchar_t*>(any_name), ServiceMain}, {nullptr, nullptr}};
  if (StartServiceCtrlDispatcherW(static_cast<const SERVICE_TABLE_ENTRYW*>(table)) != FALSE) return;
  if (GetLastError() == ERROR_FAILED_SERVICE_CONTROLLER_CONNECT) {
    throw HostError("--service is for the service manager; use --console to run in this window.", kExitUsage);
  }
  ThrowLastError("can't meet the service manager");
}

}  // namespace ondura
