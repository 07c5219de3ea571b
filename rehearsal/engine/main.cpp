// The client engine of the rehearsal machine: does one command of the component and ends.

#include <iostream>

#include "rehearsal/common/command_line.h"
#include "rehearsal/common/own_process.h"
#include "rehearsal/common/program.h"
#include "rehearsal/engine/commands.h"

int main(int argc, char** argv) {
  using namespace ondura::rehearsal;
  const std::string text = ParameterText(argc, argv);
  return RunProgram("engine", [&](Client& client) {
    const auto command = ParseEngineCommand(text);
    if (command && RunEngineCommand(client, *command)) return kExitDone;
    std::cerr << "engine: '" << text << "' is no command; give one of 12, 16, 17, 24, 28, 30 and 51, such as "
              << "'51<folder>'\n";
    return kExitUnusable;
  });
}
