// OnduraService.exe: the scheduling service and what installs it.

#include <iostream>

#include "product.h"
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

void Perform(const ServiceOptions& options) {
  if (options.action == ServiceAction::kRunAsService) return RunServiceProcess();
  if (options.action == ServiceAction::kConsole) return RunInConsole(options);
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

}  // namespace

int main() {
  return GuardedMain("OnduraService", [] {
    const auto parsed = ParseServiceOptions();
    if (!parsed.options) return parsed.exit_code;
    Perform(*parsed.options);
    return 0;
  });
}
