#include "hosts.h"

#include <unistd.h>

#include <iostream>

#include "EngineGuard.h"
#include "GuardedMachine.h"
#include "SoleHost.h"
#include "TickGuard.h"
#include "machines/posix/HostProcess.h"
#include "profile/profile_paths.h"
#include "service/Component.h"
#include "service/Controller.h"
#include "tick_loop.h"

namespace ondura {

namespace {

// Key of the shared state that names the host in charge.

// The start-up ends silently where the product is not configured, and a host without a product would loop
// over nothing. The derived names are filled by a good read alone.
bool IsConfigured(Component& component) {
  const Installation& installation = component.installation();
  if (!installation.ProfileIniName.empty()) return true;
  std::cerr << "ondura-host: no usable product configuration in " << installation.DataFile(kConfigurationFile)
            << ". Make one with `ondura init`, or name the install folder with --install.\n";
  return false;
}

// The twin is in charge for as long as this object lives, also when it leaves by an error.
class Charge {
 public:
  explicit Charge(Component& component) : component_(component) {
    component_.transfer().Trf_WriteUserNameProfile(profile_keys::kStandard, "1");
  }
  ~Charge() { component_.transfer().Trf_WriteUserNameProfile(profile_keys::kStandard, "0"); }
  Charge(const Charge&) = delete;
  Charge& operator=(const Charge&) = delete;

 private:
  Component& component_;
};

std::string OwnName() {
  const std::string path = ExecutableOf(getpid()).value_or("");
  return path.substr(path.rfind('/') + 1);
}

// Runs `host` on a fresh component where the product is configured and no other host of the kind runs.
template <class Host>
int RunSole(const Machine& machine, const HostOptions& options, std::string_view kind, const Host& host) {
  GuardedMachine guarded{machine};
  Component component{guarded.machine()};
  component.start_up().ReadInstallation(options.install);
  if (!IsConfigured(component)) return kExitUsage;
  const SoleHost sole(machine, component.installation().ProductInstallationName, kind, OwnName());
  if (sole.refusal().empty()) {
    host(component, guarded);
    return 0;
  }
  std::cerr << "ondura-host: " << sole.refusal() << "\n";
  return kExitSecondHost;
}

// Makes the passes of a component that lives on `guarded`, each only when it can do no harm.
template <class Pass>
void RunPasses(const Machine& machine, GuardedMachine& guarded, const Installation& installation,
               const HostOptions& options, const StopSignals& stop, const Pass& pass) {
  TickGuard guard(machine, installation,
                  [](std::string_view text) { std::cerr << "ondura-host: " << text << "\n"; });
  EngineGuard engine(machine, installation, options.EngineLimit());
  guarded.Attach(engine, installation.ClientExe);
  RunTicks(options, stop, [&] {
    if (!guard.MayTick(options.Period())) return;
    guarded.BelieveClock();
    pass();
    engine.Forget();
  });
  guarded.Detach();
}

}  // namespace

int RunService(const Machine& machine, const HostOptions& options, const StopSignals& stop) {
  return RunSole(machine, options, "service", [&](Component& component, GuardedMachine& guarded) {
    Controller& controller = component.controller();
    controller.cont_InitialSch(options.install);
    RunPasses(machine, guarded, component.installation(), options, stop,
              [&] { controller.Cont_CheckStandardRunning(); });
  });
}

int RunBackground(const Machine& machine, const HostOptions& options, const StopSignals& stop) {
  return RunSole(machine, options, "background", [&](Component& component, GuardedMachine& guarded) {
    Controller& controller = component.controller();
    controller.cont_InitialSch_Backgrnd(options.install);
    const Charge charge{component};
    RunPasses(machine, guarded, component.installation(), options, stop,
              [&] { controller.Cont_startschBackup(); });
  });
}

int RunElevated(const Machine& machine, const HostOptions& options, const StopSignals& stop) {
  return RunSole(machine, options, "elevated", [&](Component& component, GuardedMachine&) {
    Controller& controller = component.controller();
    RunTicks(options, stop, [&] {
      controller.Cont_LaunchAdminProcess();
      controller.Cont_LaunchAdminProcessSQL();
      controller.Cont_LaunchSQlAdminProcess();
    });
  });
}

}  // namespace ondura
