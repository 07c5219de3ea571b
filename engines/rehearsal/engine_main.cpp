// The client engine of the rehearsal machine: does one command of the component and ends.

#include <string>

#include "engine/engine_command.h"
#include "engines/common/HostProcess.h"
#include "engines/common/commands.h"
#include "engines/common/program.h"
#include "engines/rehearsal/VaultStore.h"

int main(int argc, char** argv) {
  using namespace ondura;
  using namespace ondura::engines;
  const std::string text = ParameterText(argc, argv);
  return RunProgram("engine", [&](Client& client) {
    const auto call = ParseEngineCall(text);
    if (!call) return RefuseCommand("engine", text);
    RunRehearsalCommand(client, *call);
    return kExitDone;
  });
}
