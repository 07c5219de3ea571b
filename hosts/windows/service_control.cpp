#include "service_control.h"

#include <iterator>
#include <string_view>

#include "HostError.h"
#include "machines/win32/handles.h"
#include "machines/win32/text_edges.h"
#include "machines/win32/windows_api.h"

namespace ondura {

namespace {

constexpr DWORD kPollMs = 200;

constexpr const wchar_t* kDescription =
    L"Runs the scheduled backups of every user of this computer. When it is stopped, no backup starts.";

struct ServiceManagerHandle {
  using Value = SC_HANDLE;
  static bool IsValid(Value handle) { return handle != nullptr; }
  static void Close(Value handle) { CloseServiceHandle(handle); }
};
using UniqueServiceHandle = Unique<ServiceManagerHandle>;

std::string InQuotes(const std::string& name) { return "'" + name + "'"; }

UniqueServiceHandle OpenManager(DWORD access) {
  UniqueServiceHandle manager{OpenSCManagerW(nullptr, SERVICES_ACTIVE_DATABASEW, access)};
  if (!manager.valid()) ThrowLastError("can't open the service manager (run this as an administrator)");
  return manager;
}

UniqueServiceHandle OpenInstalled(const std::string& name, DWORD access) {
  const UniqueServiceHandle manager = OpenManager(SC_MANAGER_CONNECT);
  UniqueServiceHandle service{OpenServiceW(manager.get(), ToWide(name).c_str(), access)};
  if (!service.valid()) ThrowLastError("can't open the service " + InQuotes(name));
  return service;
}

DWORD StateOf(SC_HANDLE service) {
  SERVICE_STATUS status{};
  if (QueryServiceStatus(service, &status) == FALSE) ThrowLastError("can't ask for the state of the service");
  return status.dwCurrentState;
}

// Looks again and again, until `done` says so or the time is over.
template <class Done>
void WaitFor(std::chrono::seconds limit, std::string_view failure, const Done& done) {
  const auto end = std::chrono::steady_clock::now() + limit;
  while (!done()) {
    if (std::chrono::steady_clock::now() >= end) throw HostError(std::string{failure});
    Sleep(kPollMs);
  }
}

void Describe(SC_HANDLE service) {
  std::wstring text = kDescription;
  SERVICE_DESCRIPTIONW description{text.data()};
  ChangeServiceConfig2W(service, SERVICE_CONFIG_DESCRIPTION, &description);
}

// A service that fails is started again after a minute, three times in a day. The last action holds for all
// further failures, so it has to be none. A stop with an error counts as a failure only by the flag.
void SetRecovery(SC_HANDLE service) {
  SC_ACTION actions[] = {{SC_ACTION_RESTART, 60'000},
                         {SC_ACTION_RESTART, 60'000},
                         {SC_ACTION_RESTART, 60'000},
                         {SC_ACTION_NONE, 0}};
  SERVICE_FAILURE_ACTIONSW recovery{};
  recovery.dwResetPeriod = 86'400;
  recovery.cActions = static_cast<DWORD>(std::size(actions));
  recovery.lpsaActions = static_cast<SC_ACTION*>(actions);
  SERVICE_FAILURE_ACTIONS_FLAG also_errors{TRUE};
  const bool is_set =
      ChangeServiceConfig2W(service, SERVICE_CONFIG_FAILURE_ACTIONS, &recovery) != FALSE &&
      (ChangeServiceConfig2W(service, SERVICE_CONFIG_FAILURE_ACTIONS_FLAG, &also_errors) != FALSE ||
       GetLastError() == ERROR_INVALID_LEVEL);  // a system that does not know the flag
  if (!is_set) ThrowLastError("can't set what Windows does when the service breaks off");
}

}  // namespace

void InstallService(const std::string& name, const std::string& command_line) {
  const UniqueServiceHandle manager = OpenManager(SC_MANAGER_CONNECT | SC_MANAGER_CREATE_SERVICE);
  const UniqueServiceHandle service{
      CreateServiceW(manager.get(), ToWide(name).c_str(), ToWide(name).c_str(), SERVICE_ALL_ACCESS,
                     SERVICE_WIN32_OWN_PROCESS, SERVICE_AUTO_START, SERVICE_ERROR_NORMAL,
                     ToWide(command_line).c_str(), nullptr, nullptr, nullptr, nullptr, nullptr)};
  if (!service.valid()) ThrowLastError("can't install the service " + InQuotes(name));
  Describe(service.get());
  SetRecovery(service.get());
}

void StartInstalledService(const std::string& name, std::chrono::seconds limit) {
  const UniqueServiceHandle service = OpenInstalled(name, SERVICE_START | SERVICE_QUERY_STATUS);
  const std::string what = "the service " + InQuotes(name) + " did not start";
  const std::string see = "; the event log says why.";
  // A process that ends before it has answered the manager fails the call itself, each time with another
  // number.
  if (StartServiceW(service.get(), 0, nullptr) == FALSE && GetLastError() != ERROR_SERVICE_ALREADY_RUNNING) {
    throw HostError(what + ": " + SystemText(GetLastError()) + see);
  }
  const std::string failure = what + see;
  WaitFor(limit, failure, [&] {
    const DWORD state = StateOf(service.get());
    if (state == SERVICE_STOPPED) throw HostError(failure);
    return state == SERVICE_RUNNING;
  });
}

void StopInstalledService(const std::string& name, std::chrono::seconds limit) {
  const UniqueServiceHandle service = OpenInstalled(name, SERVICE_STOP | SERVICE_QUERY_STATUS);
  // A service that is starting takes no stop; one that is stopping needs none.
  WaitFor(limit, "the service " + InQuotes(name) + " has not stopped so far: it lets a running job end.",
          [&] {
            const DWORD state = StateOf(service.get());
            SERVICE_STATUS status{};
            if (state == SERVICE_RUNNING &&
                ControlService(service.get(), SERVICE_CONTROL_STOP, &status) == FALSE &&
                GetLastError() != ERROR_SERVICE_NOT_ACTIVE &&
                GetLastError() != ERROR_SERVICE_CANNOT_ACCEPT_CTRL) {
              ThrowLastError("can't stop the service " + InQuotes(name));
            }
            return state == SERVICE_STOPPED;
          });
}

void RecoverService(const std::string& name) {
  SetRecovery(OpenInstalled(name, SERVICE_CHANGE_CONFIG | SERVICE_START).get());
}

void RemoveService(const std::string& name) {
  const UniqueServiceHandle service = OpenInstalled(name, DELETE);
  if (DeleteService(service.get()) == FALSE) ThrowLastError("can't remove the service " + InQuotes(name));
}

}  // namespace ondura
