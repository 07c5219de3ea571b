#include "elevated_host.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "component_object.h"
#include "product.h"
#include "sole_program.h"
#include "tick_loop.h"

namespace ondura {

namespace {

constexpr std::array<std::string_view, 3> kOperations{"Cont_LaunchAdminProcess", "Cont_LaunchAdminProcessSQL",
                                                      "Cont_LaunchSQlAdminProcess"};

std::vector<std::string_view> OperationsOf(const ComponentObject& controller, const Reporter& reporter) {
  std::vector<std::string_view> operations;
  for (const std::string_view operation : kOperations) {
    if (controller.Has(operation)) {
      operations.push_back(operation);
    } else {
      reporter.Note("the installed component has no " + std::string{operation} + "; it is left out.");
    }
  }
  return operations;
}

}  // namespace

void RunElevated(const WindowsHostOptions& options, const StopEvent& stop, const Reporter& reporter) {
  const SoleProgram sole(ReadProduct(options.install).name, "elevated");
  const Apartment apartment;
  const ComponentObject controller("Controller");
  controller.Call("cont_InitialSch_Backgrnd", {options.install});
  const auto operations = OperationsOf(controller, reporter);
  RunTicks(options, stop, [&] {
    for (const std::string_view operation : operations) controller.Call(operation);
  });
}

}  // namespace ondura
