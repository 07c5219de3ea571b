// The engine that backs up into repositories of restic: does one command of the component and ends.

#include <iostream>
#include <string>

#include "engine/engine_command.h"
#include "engines/common/HostProcess.h"
#include "engines/common/commands.h"
#include "engines/common/program.h"
#include "engines/restic/ResticDoor.h"

int main(int argc, char** argv) {
  using namespace ondura;
  using namespace ondura::engines;
  const std::string text = ParameterText(argc, argv);
  const auto door_call = ParseDoorCall(ParameterWords(argc, argv));
  return RunProgram("engine", [&](Client& client) {
    if (door_call) {
      client.Serve(door_call->user);
      return ResticDoor(client, std::cout).Run(*door_call);
    }
    const auto call = ParseEngineCall(text);
    if (!call) return RefuseCommand("engine", text);
    ResticStore store(client);
    RunEngineCommand(client, store, *call);
    return kExitDone;
  });
}
