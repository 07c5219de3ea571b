#include <memory>

#include "Failure.h"
#include "commands.h"
#include "engines/check/check_options.h"

namespace ondura {

void AddEngineCheckCommand(CLI::App& app, const Globals& /*globals*/) {
  auto& command =
      *app.add_subcommand("engine-check", "Says whether an engine does all that the component expects");
  auto request = std::make_shared<check::CheckRequest>();
  check::AddCheckOptions(command, *request);
  command.footer("Example: ondura engine-check build/release/engines/restic-engine");
  command.callback([request] {
    const check::CheckEnd end = check::RunChecks(*request);
    if (end.exit_code != 0) throw Failure(static_cast<Exit>(end.exit_code), end.message);
  });
}

}  // namespace ondura
