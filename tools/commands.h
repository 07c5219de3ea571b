#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace ondura {

// What every command needs to know, filled before it runs.
struct Globals {
  std::string root;                                     // the machine's folder on the host
  std::string install = "C:\\Program Files\\Ondura\\";  // the install folder as the machine sees it
};

// Each adds one command with its options; the command runs while the arguments are parsed and throws
// Failure when it can't do what it is asked.
void AddInitCommand(CLI::App& app, const Globals& globals);
void AddUserCommand(CLI::App& app, const Globals& globals);
void AddSetCommand(CLI::App& app, const Globals& globals);
void AddGetCommand(CLI::App& app, const Globals& globals);
void AddScheduleCommand(CLI::App& app, const Globals& globals);
void AddSelectCommand(CLI::App& app, const Globals& globals);
void AddExcludeCommand(CLI::App& app, const Globals& globals);
void AddStatusCommand(CLI::App& app, const Globals& globals);
void AddLogCommand(CLI::App& app, const Globals& globals);
void AddEngineCheckCommand(CLI::App& app, const Globals& globals);
void AddStoreCommands(CLI::App& app, const Globals& globals);
void AddStoreSettingsCommands(CLI::App& app, const Globals& globals);
void AddPauseCommands(CLI::App& app, const Globals& globals);
void AddCompletionCommands(CLI::App& app, const Globals& globals);

}  // namespace ondura
