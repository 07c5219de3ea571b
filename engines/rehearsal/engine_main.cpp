// The client engine of the rehearsal machine: does one command of the component and ends.

#include <iostream>
#include <string>
#include <vector>

#include "engine/engine_command.h"
#include "engines/common/HostProcess.h"
#include "engines/common/program.h"
#include "engines/rehearsal/VaultStore.h"
#include "text/text.h"

int main(int argc, char** argv) {
  using namespace ondura;
  using namespace ondura::engines;
  const std::string text = ParameterText(argc, argv);
  return RunProgram("engine", [&](Client& client) {
    const auto call = ParseEngineCall(text);
    if (!call) {
      std::vector<std::string> numbers;
      numbers.reserve(std::size(kEngineCommands));
      for (const auto command : kEngineCommands) numbers.push_back(NumberOf(command));
      const std::string last = numbers.back();
      numbers.pop_back();
      std::cerr << "engine: '" << text << "' is not a command; give one of " << Join(numbers, ", ") << " and "
                << last << ", such as '" << last << "<folder>'\n";
      return kExitUnusable;
    }
    RunRehearsalCommand(client, *call);
    return kExitDone;
  });
}
