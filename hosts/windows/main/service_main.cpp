// OnduraService.exe: the scheduling service and what installs it.

#include <iostream>

#include "product.h"
#include "registration.h"
#include "scheduling_host.h"
#include "service_control.h"
#include "service_options.h"
#include "service_process.h"

namespace {

using namespace ondura;

void RunInConsole(const ServiceOptions& options) {
  const StopEvent stop;
  const ConsoleStop console(stop);
  RunScheduling(options, stop);
}

void RegisterAll(const ServiceOptions& options) {
  if (!options.data.empty()) PointToData(options.install, options.data);
  PrepareSharedState(options.install);
  RegisterComponent(options.install);
}

void ManageService(const ServiceOptions& options) {
  const std::string name = ReadProduct(options.install).service_name;
  const std::chrono::seconds limit{options.wait_seconds};
  switch (options.action) {
    case ServiceAction::kInstall:
      InstallService(name, ServiceCommandLine(options));
      break;
    case ServiceAction::kStart:
      StartInstalledService(name, limit);
      break;
    case ServiceAction::kStop:
      StopInstalledService(name, limit);
      break;
    default:
      RemoveService(name);
      break;
  }
  std::cout << "Done: " << name << ".\n";
}

void Perform(const ServiceOptions& options) {
  switch (options.action) {
    case ServiceAction::kRunAsService:
      return RunServiceProcess();
    case ServiceAction::kConsole:
      return RunInConsole(options);
    case ServiceAction::kRegister:
      return RegisterAll(options);
    case ServiceAction::kUnregister:
      return UnregisterComponent(options.install);
    default:
      return ManageService(options);
  }
}

}  // namespace

int main() {
  return GuardedMain("OnduraService", [] {
    const auto parsed = ParseServiceOptions();
    if (!parsed.options) return parsed.exit_code;
    Perform(*parsed.options);
    return 0;
  });
}
