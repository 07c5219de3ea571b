#include "elevated_host.h"

#include "ComponentObject.h"
#include "SoleProgram.h"
#include "TickReport.h"
#include "machines/win32/Win32Machine.h"
#include "product.h"
#include "service/Component.h"
#include "service/Controller.h"
#include "service/StartUp.h"
#include "tick_loop.h"

namespace ondura {

// It works with the core itself: each start-up that the registered component has also clears what a job of
// another process left.
void RunElevated(const WindowsHostOptions& options, const StopEvent& stop, const Reporter& reporter) {
  const SoleProgram sole(ReadProduct(options.install).name, "elevated");
  const Apartment apartment;
  const auto machine = MakeWin32Machine();
  Component component{machine->machine()};
  component.start_up().ReadInstallation(options.install);
  Controller& controller = component.controller();
  TickReport report([&](std::string_view text) { reporter.Error(text); });
  RunTicks(options, stop, [&] {
    report.Run([&] {
      controller.Cont_LaunchAdminProcess();
      controller.Cont_LaunchAdminProcessSQL();
      controller.Cont_LaunchSQlAdminProcess();
    });
  });
}

}  // namespace ondura
