// Plays the scenario on a machine in memory. The engine is the same code as the program's, run as a script.

#include <iostream>

#include "engines/common/Client.h"
#include "engines/common/command_line.h"
#include "engines/rehearsal/VaultStore.h"
#include "machines/simulated/SimulatedMachine.h"
#include "scenario.h"

namespace ondura::scenario {

namespace {

using namespace std::chrono_literals;

// While a script acts the component does nothing, so the engine acts when the component is done with what it
// does beside a running engine.
constexpr auto kEngineDelay = 30s;

void RunEngine(ProgramRun& run) {
  run.After(kEngineDelay, [&run] {
    engines::Client client(run.machine().outside(), kInstall);
    const auto call = ParseEngineCall(run.parameters());
    if (!client.Load() || !call) return run.Exit(1);
    engines::RunRehearsalCommand(client, *call);
    run.Exit(0);
  });
}

}  // namespace

int PlayOnMachine(const std::vector<std::string>& /*arguments*/) {
  SimulatedMachine machine;
  const auto put_programs = [&] {
    machine.InstallProgram(kEngine, RunEngine);
    machine.InstallProgram(kDatabaseManager, [](ProgramRun& run) { run.NeverEnds(); });
  };
  std::cout << Play({machine.outside(), machine.machine(), put_programs});
  return 0;
}

}  // namespace ondura::scenario
