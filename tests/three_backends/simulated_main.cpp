// Plays the scenario on a machine in memory. The engine is the same code as the program's, run as a script.

#include <exception>
#include <iostream>

#include "demo/common/client.h"
#include "demo/common/command_line.h"
#include "demo/engine/commands.h"
#include "platform/simulated/simulated_machine.h"
#include "scenario.h"

namespace {

using namespace ondura;
using namespace std::chrono_literals;

// While a script acts the component stands still, so the engine acts when the component is done with what it
// does beside a running engine.
constexpr auto kEngineDelay = 30s;

void RunEngine(ProgramRun& run) {
  run.After(kEngineDelay, [&run] {
    demo::Client client(run.machine().outside(), scenario::kInstall);
    const auto command = demo::ParseEngineCommand(run.parameters());
    const bool done = client.Load() && command && demo::RunEngineCommand(client, *command);
    run.Exit(done ? 0 : 1);
  });
}

void Run() {
  SimulatedMachine machine;
  const auto put_programs = [&] {
    machine.InstallProgram(scenario::kEngine, RunEngine);
    machine.InstallProgram(scenario::kDatabaseManager, [](ProgramRun& run) { run.NeverEnds(); });
  };
  std::cout << scenario::Play({machine.outside(), machine.machine(), put_programs});
}

}  // namespace

int main() {
  try {
    Run();
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "scenario-simulated: " << error.what() << "\n";
    return 1;
  }
}
