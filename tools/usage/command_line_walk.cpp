#include "command_line_walk.h"

#include <algorithm>
#include <numeric>

#include "text/text.h"

namespace ondura {

namespace {

// An option counts wherever it stands behind the command that has it.
const CLI::Option* FindOption(const CLI::App* command, const std::string& name) {
  for (; command != nullptr; command = command->get_parent()) {
    if (const CLI::Option* option = command->get_option_no_throw(name)) return option;
  }
  return nullptr;
}

// How many letters have to be put in, left out or changed to make one word of the other.
std::size_t EditDistance(const std::string& left, const std::string& right) {
  std::vector<std::size_t> row(right.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < left.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i + 1;
    for (std::size_t j = 0; j < right.size(); ++j) {
      const std::size_t changed = diagonal + (left[i] == right[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({row[j + 1] + 1, row[j] + 1, changed});
    }
  }
  return row.back();
}

const CLI::App* FindCommand(const CLI::App& command, const std::string& name) {
  const auto commands = CommandsOf(command);
  const auto found = std::ranges::find(commands, name, [](const CLI::App* one) { return one->get_name(); });
  return found == commands.end() ? nullptr : *found;
}

}  // namespace

CommandLineWalk WalkCommandLine(const CLI::App& app, const std::vector<std::string>& words) {
  CommandLineWalk walk;
  walk.command = &app;
  bool only_positionals = false;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::string& word = words[i];
    walk.open_option = nullptr;
    if (word == "--" && !only_positionals) {
      only_positionals = true;
    } else if (word.size() > 1 && word[0] == '-' && !only_positionals) {
      const auto equals = word.find('=');
      const CLI::Option* option = FindOption(walk.command, word.substr(0, equals));
      if (option == nullptr && walk.unknown_option.empty()) walk.unknown_option = word.substr(0, equals);
      if (option == nullptr || equals != std::string::npos || !TakesValue(*option)) continue;
      walk.open_option = option;
      ++i;
      if (i < words.size()) walk.open_option = nullptr;
    } else if (const CLI::App* command = FindCommand(*walk.command, word)) {
      walk.command = command;
    } else if (!CommandsOf(*walk.command).empty()) {
      walk.unknown_command = word;
      if (i + 1 < words.size()) walk.after_unknown = words[i + 1];
      return walk;
    } else {
      walk.positionals.push_back(word);
    }
  }
  return walk;
}

std::vector<const CLI::App*> CommandsOf(const CLI::App& command) {
  return command.get_subcommands(
      [](const CLI::App* one) { return !one->get_name().empty() && !one->get_group().empty(); });
}

std::vector<const CLI::Option*> OptionsOf(const CLI::App& command) {
  return command.get_options(
      [](const CLI::Option* one) { return !one->get_positional() && !one->get_group().empty(); });
}

std::vector<const CLI::Option*> PositionalsOf(const CLI::App& command) {
  return command.get_options([](const CLI::Option* one) { return one->get_positional(); });
}

std::string LongNameOf(const CLI::Option& option) {
  return option.get_lnames().empty() ? option.get_name() : "--" + option.get_lnames().front();
}

std::string FullNameOf(const CLI::App& command) {
  const CLI::App* parent = command.get_parent();
  return parent == nullptr ? command.get_name() : FullNameOf(*parent) + " " + command.get_name();
}

bool TakesValue(const CLI::Option& option) { return option.get_items_expected_max() > 0; }

std::string NearestOf(const std::string& word, const std::vector<std::string>& known) {
  const auto bare = [](const std::string& name) {
    return ToLower(name).substr(name.starts_with("--") ? 2 : 0);
  };
  std::string nearest;
  // Every third letter may be wrong; two that are swapped count twice.
  std::size_t least = std::max<std::size_t>(1, bare(word).size() / 3) + 1;
  for (const std::string& name : known) {
    const std::size_t distance = EditDistance(bare(word), bare(name));
    if (distance >= least || distance >= bare(name).size()) continue;
    least = distance;
    nearest = name;
  }
  return nearest;
}

}  // namespace ondura
