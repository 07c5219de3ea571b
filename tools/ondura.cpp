// The tool for people: sets a machine up, tells it what to back up and when, and shows how that went.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "Failure.h"
#include "commands.h"
#include "machines/posix/private_files.h"
#include "next_steps.h"
#include "usage/usage_message.h"

namespace {

using ondura::Exit;

int Leave(Exit exit) { return static_cast<int>(exit); }

void ShowNextSteps(const ondura::Globals& globals) {
  constexpr std::size_t kMost = 3;
  std::cout << "Next steps:\n";
  const auto steps = ondura::NextSteps(globals);
  for (std::size_t i = 0; i < std::min(steps.size(), kMost); ++i) {
    std::cout << "  " << i + 1 << ". " << steps[i].what << ":\n       " << steps[i].command << "\n";
  }
  std::cout << "'ondura --help' lists all commands.\n";
}

int Run(int argc, char** argv) {
  ondura::Globals globals;
  CLI::App app{"Sets up and watches scheduled backups on a machine kept in a folder.", "ondura"};
  app.set_version_flag("--version", "ondura " ONDURA_VERSION);
  app.add_option("--root", globals.root, "The machine's folder")->envname("ONDURA_ROOT")->type_name("DIR");
  app.add_option("--install", globals.install, "The install folder as the machine sees it")
      ->type_name("PATH")
      ->capture_default_str();
  app.require_subcommand(0, 1);
  app.fallthrough();
  app.footer(
      "Example:\n"
      "  ondura --root /srv/machine init --engine ./engine\n"
      "  ondura --root /srv/machine user add ann\n"
      "  ondura --root /srv/machine select ann 'C:\\Users\\ann\\Documents'\n"
      "  ondura --root /srv/machine schedule add ann --at 12:30 --repeat daily\n"
      "  ondura --root /srv/machine status\n"
      "Exit codes: 0 done, 1 not there or not possible, 2 wrong usage or no machine folder.");
  AddInitCommand(app, globals);
  AddUserCommand(app, globals);
  AddSetCommand(app, globals);
  AddGetCommand(app, globals);
  AddScheduleCommand(app, globals);
  AddSelectCommand(app, globals);
  AddExcludeCommand(app, globals);
  AddStatusCommand(app, globals);
  AddLogCommand(app, globals);
  AddEngineCheckCommand(app, globals);
  AddStoreCommands(app, globals);
  AddStoreSettingsCommands(app, globals);
  AddPauseCommands(app, globals);
  AddCompletionCommands(app, globals);
  try {
    app.parse(argc, argv);
    if (app.get_subcommands().empty()) ShowNextSteps(globals);
    std::cout.flush();
    if (!std::cout)
      throw ondura::Failure(Exit::kFailed, "the output could not be written; look at where it goes");
  } catch (const CLI::Success& asked) {
    app.exit(asked);
  } catch (const CLI::ParseError& error) {
    const std::vector<std::string> words(argv + 1, argv + argc);
    throw ondura::Failure(Exit::kUsage, ondura::UsageMessage(app, error, words));
  }
  return Leave(Exit::kDone);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    ondura::KeepFilesPrivate();
    return Run(argc, argv);
  } catch (const ondura::Failure& failure) {
    std::cerr << "ondura: " << failure.what() << "\n";
    return Leave(failure.exit());
  } catch (const std::exception& error) {
    std::cerr << "ondura: " << error.what() << "\n";
    return Leave(Exit::kFailed);
  }
}
