#include "contract.h"
#include "support/CheckedMachine.h"

namespace ondura {
namespace {

class SimulatedUnderTest : public TestedMachine {
 public:
  const Machine& machine() override { return house_.machine(); }
  const Machine& other() override { return house_.outside(); }

  LaunchRequest PutProgram(std::string_view path, std::chrono::milliseconds lifetime,
                           int exit_code) override {
    house_.InstallProgram(path, [lifetime, exit_code](ProgramRun& run) {
      run.ExitAfter(lifetime, static_cast<std::uint32_t>(exit_code));
    });
    return {std::string(path), "", "C:", 0, "open"};
  }
  void Protect(std::string_view path) override { house_.disk().SetReadOnly(path, true); }

 private:
  CheckedMachine house_;
};

std::unique_ptr<TestedMachine> MakeSimulatedUnderTest() { return std::make_unique<SimulatedUnderTest>(); }

INSTANTIATE_TEST_SUITE_P(Simulated, PlatformContract, testing::Values(&MakeSimulatedUnderTest));

}  // namespace
}  // namespace ondura
