#include "usage_message.h"

#include <algorithm>

#include "command_line_walk.h"
#include "text/text.h"

namespace ondura {

namespace {

template <class Items, class NameOf>
std::vector<std::string> NamesOf(const Items& items, const NameOf& name_of) {
  std::vector<std::string> names;
  names.reserve(items.size());
  for (const auto* item : items) names.push_back(name_of(*item));
  return names;
}

std::vector<std::string> CommandNames(const CLI::App& command) {
  return NamesOf(CommandsOf(command), [](const CLI::App& one) { return one.get_name(); });
}

std::string DidYouMean(const std::string& name) {
  return name.empty() ? "" : "; did you mean '" + name + "'?";
}

std::string SeeHelp(const CLI::App& command) { return "; see '" + FullNameOf(command) + " --help'"; }

std::string OfUnknownCommand(const CommandLineWalk& walk) {
  const auto names = CommandNames(*walk.command);
  const std::string whole = FullNameOf(*walk.command);
  std::string text = "there is no command '" + whole + " " + walk.unknown_command + "'";
  // "ondura ann restore": somebody named the user first.
  if (std::ranges::find(names, walk.after_unknown) != names.end()) {
    return text + DidYouMean(whole + " " + walk.after_unknown + " " + walk.unknown_command);
  }
  const std::string nearest = NearestOf(walk.unknown_command, names);
  if (!nearest.empty()) return text + DidYouMean(whole + " " + nearest);
  return text + "; there are " + Join(names, ", ");
}

std::string OfUnknownOption(const CommandLineWalk& walk) {
  const CLI::App& command = *walk.command;
  std::vector<std::string> names;
  const CLI::App* one = &command;
  do {
    for (const std::string& name : NamesOf(OptionsOf(*one), LongNameOf)) names.push_back(name);
    one = one->get_parent();
  } while (one != nullptr);
  const std::string nearest = NearestOf(walk.unknown_option, names);
  return "'" + FullNameOf(command) + "' has no option '" + walk.unknown_option + "'" +
         (nearest.empty() ? SeeHelp(command) : DidYouMean(nearest));
}

// The parser's words name the value that it can't use.
std::string OfValue(const CommandLineWalk& walk, const CLI::ParseError& error) {
  const std::string text = std::string{error.what()}.substr(0, std::string_view{error.what()}.find('\n'));
  return text + SeeHelp(*walk.command);
}

}  // namespace

std::string UsageMessage(const CLI::App& app, const CLI::ParseError& error,
                         const std::vector<std::string>& words) {
  const CommandLineWalk walk = WalkCommandLine(app, words);
  if (!walk.unknown_command.empty()) return OfUnknownCommand(walk);
  if (!walk.unknown_option.empty()) return OfUnknownOption(walk);
  const auto commands = CommandNames(*walk.command);
  if (!commands.empty()) {
    return "'" + FullNameOf(*walk.command) + "' needs a command: " + Join(commands, ", ") +
           SeeHelp(*walk.command);
  }
  const auto positionals = PositionalsOf(*walk.command);
  for (std::size_t i = walk.positionals.size(); i < positionals.size(); ++i) {
    if (!positionals[i]->get_required()) continue;
    return "'" + FullNameOf(*walk.command) + "' needs " + positionals[i]->get_name(true) + ": " +
           positionals[i]->get_description() + SeeHelp(*walk.command);
  }
  if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr && !walk.positionals.empty()) {
    return "'" + FullNameOf(*walk.command) + "' can't use '" + walk.positionals.back() + "'" +
           SeeHelp(*walk.command);
  }
  return OfValue(walk, error);
}

}  // namespace ondura
