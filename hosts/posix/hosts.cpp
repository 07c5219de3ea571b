#include "hosts.h"

#include <iostream>

#include "service/Component.h"
#include "service/Controller.h"
#include "tick_loop.h"

namespace ondura {

namespace {

// Key of the shared state that names the host in charge.
constexpr const char* kStandard = "Standard";

// The start-up ends silently where the product is not configured, and a host without a product would loop
// over nothing. The derived names are filled by a good read alone.
bool IsConfigured(Component& component) {
  const Installation& installation = component.installation();
  if (!installation.ProfileIniName.empty()) return true;
  std::cerr << "ondura-host: no usable product configuration in "
            << installation.DataFile("Configuration.ini")
            << ". Make one with `ondura init`, or name the install folder with --install.\n";
  return false;
}

// The twin is in charge for as long as this object lives, also when it leaves by an error.
class Charge {
 public:
  explicit Charge(Component& component) : component_(component) {
    component_.transfer().Trf_WriteUserNameProfile(kStandard, "1");
  }
  ~Charge() { component_.transfer().Trf_WriteUserNameProfile(kStandard, "0"); }
  Charge(const Charge&) = delete;
  Charge& operator=(const Charge&) = delete;

 private:
  Component& component_;
};

}  // namespace

int RunService(const Machine& machine, const HostOptions& options, const StopSignals& stop) {
  Component component{machine};
  Controller& controller = component.controller();
  controller.cont_InitialSch(options.install);
  if (!IsConfigured(component)) return kExitUsage;
  RunTicks(options, stop, [&] { controller.Cont_CheckStandardRunning(); });
  return 0;
}

int RunBackground(const Machine& machine, const HostOptions& options, const StopSignals& stop) {
  Component component{machine};
  Controller& controller = component.controller();
  controller.cont_InitialSch_Backgrnd(options.install);
  if (!IsConfigured(component)) return kExitUsage;
  const Charge charge{component};
  RunTicks(options, stop, [&] { controller.Cont_startschBackup(); });
  return 0;
}

int RunElevated(const Machine& machine, const HostOptions& options, const StopSignals& stop) {
  Component component{machine};
  Controller& controller = component.controller();
  controller.cont_InitialSch_Backgrnd(options.install);
  if (!IsConfigured(component)) return kExitUsage;
  RunTicks(options, stop, [&] {
    controller.Cont_LaunchAdminProcess();
    controller.Cont_LaunchAdminProcessSQL();
    controller.Cont_LaunchSQlAdminProcess();
  });
  return 0;
}

}  // namespace ondura
