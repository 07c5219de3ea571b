// OnduraService.exe: the scheduling service and what installs it.

#include <iostream>

#include "HostError.h"
#include "machines/win32/paths.h"
#include "product.h"
#include "registration.h"
#include "rights.h"
#include "scheduling_host.h"
#include "service_control.h"
#include "service_options.h"
#include "service_process.h"
#include "system_notes.h"

namespace {

using namespace ondura;

void RunInConsole(const ServiceOptions& options) {
  const StopEvent stop;
  const ConsoleStop console(stop);
  RunScheduling(options, stop, UsualReporter("OnduraService"), [] {});
}

std::vector<std::string> EventSources(const std::string& service_name) {
  return {service_name, "OnduraService", "OnduraBackground", "OnduraElevated", "OndruaEStartup"};
}

// The rights come first: what is made in the folder then has them.
void RegisterAll(const ServiceOptions& options) {
  if (!options.data.empty()) PointToData(options.install, options.data, options.keep);
  const Product product = ReadProduct(options.install);
  const std::string data = DataFolder(options.install);
  SecureDataFolder(data);
  PrepareSharedState(options.install);
  AddEventSources(EventSources(product.service_name));
  if (options.remember) RememberFolders(product.name, options.install, data);
  RegisterComponent(options.install);
}

void UnregisterAll(const ServiceOptions& options) {
  UnregisterComponent(options.install);
  RemoveEventSources(EventSources(ReadProduct(options.install).service_name));
}

void Allow(const ServiceOptions& options) {
  const Product product = ReadProduct(options.install);
  const std::string data = DataFolder(options.install);
  const std::string folder = data + product.name + options.user;
  if (!IsFolder(WidePath(folder))) {
    throw HostError("there is no backup user '" + options.user + "': " + folder + " is missing.", kExitUsage);
  }
  PrepareSharedState(options.install);
  AllowToChange(folder, options.account);
  AllowToChange(data + "UserName.ini", options.account);
  std::cout << "Done: " << options.account << " may work with the data of " << options.user << ".\n";
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
    case ServiceAction::kRecover:
      RecoverService(name);
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
      return UnregisterAll(options);
    case ServiceAction::kAllow:
      return Allow(options);
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
