#include "scheduling_host.h"

#include "ComponentObject.h"
#include "EngineWatch.h"
#include "HostError.h"
#include "SoleProgram.h"
#include "TickGuard.h"
#include "TickReport.h"
#include "machines/win32/Win32Machine.h"
#include "product.h"
#include "profile/profile_keys.h"
#include "tick_loop.h"

namespace ondura {

namespace {

void WriteStandard(const ComponentObject& transfer, std::string_view value) {
  transfer.Call("Trf_WriteUserNameProfile", {profile_keys::kStandard.name, value});
}

// Ends the twin's charge also when it leaves by an error, which then is the one to be told about.
class Charge {
 public:
  explicit Charge(const ComponentObject& transfer) : transfer_(transfer) { WriteStandard(transfer_, "1"); }
  ~Charge() {
    try {
      WriteStandard(transfer_, "0");
    } catch (const HostError&) {
      // The service takes over from a twin that is gone, whatever the key says.
    }
  }
  Charge(const Charge&) = delete;
  Charge& operator=(const Charge&) = delete;

 private:
  const ComponentObject& transfer_;
};

void RunCalls(const WindowsHostOptions& options, const StopEvent& stop, const Reporter& reporter,
              const ComponentObject& controller, std::string_view operation) {
  const auto owner = MakeWin32Machine();
  const Installation installation = ReadInstallation(options.install);
  TickGuard guard(owner->machine(), installation, [&](std::string_view text) { reporter.Error(text); });
  const EngineWatch watch(installation, options.EngineLimit());
  TickReport report([&](std::string_view text) { reporter.Error(text); });
  RunTicks(options, stop, [&] {
    if (guard.MayTick(options.Period())) report.Run([&] { controller.Call(operation); });
  });
}

}  // namespace

void RunScheduling(const WindowsHostOptions& options, const StopEvent& stop, const Reporter& reporter,
                   const std::function<void()>& ready) {
  const SoleProgram sole(ReadProduct(options.install).name, "service");
  const Apartment apartment;
  const ComponentObject controller("Controller");
  controller.Call("cont_InitialSch", {options.install});
  ready();
  RunCalls(options, stop, reporter, controller, "Cont_CheckStandardRunning");
}

void RunBackground(const WindowsHostOptions& options, const StopEvent& stop, const Reporter& reporter) {
  const SoleProgram sole(ReadProduct(options.install).name, "background");
  const Apartment apartment;
  const ComponentObject controller("Controller");
  const ComponentObject transfer("Transfer");
  controller.Call("cont_InitialSch_Backgrnd", {options.install});
  const Charge charge(transfer);
  RunCalls(options, stop, reporter, controller, "Cont_startschBackup");
}

}  // namespace ondura
