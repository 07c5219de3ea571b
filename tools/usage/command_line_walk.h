#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace ondura {

// How far the words of a command line make sense, without running anything: for messages and completion.
struct CommandLineWalk {
  const CLI::App* command = nullptr;     // the deepest one that was named
  std::vector<std::string> positionals;  // the words that it was given
  // The first word that is no command where one was expected, and the word after it.
  std::string unknown_command;
  std::string after_unknown;
  std::string unknown_option;
  const CLI::Option* open_option = nullptr;  // still waits for its value when the words end
};

CommandLineWalk WalkCommandLine(const CLI::App& app, const std::vector<std::string>& words);

// The commands and options that can be given at `command`, under the names that people type.
std::vector<const CLI::App*> CommandsOf(const CLI::App& command);
std::vector<const CLI::Option*> OptionsOf(const CLI::App& command);
std::vector<const CLI::Option*> PositionalsOf(const CLI::App& command);
std::string LongNameOf(const CLI::Option& option);  // with its dashes

// "ondura schedule add".
std::string FullNameOf(const CLI::App& command);

// True for an option that is followed by a word of its own.
bool TakesValue(const CLI::Option& option);

// The name of `known` that `word` was probably meant to be; empty where none is near.
std::string NearestOf(const std::string& word, const std::vector<std::string>& known);

}  // namespace ondura
