#include "completion.h"

#include <algorithm>
#include <array>
#include <utility>

#include "command_line_walk.h"
#include "profile/profile_keys.h"

namespace ondura {

namespace {

constexpr std::string_view kBash = R"sh(# bash completion for ondura: source <(ondura completion bash)
_ondura() {
  local word
  COMPREPLY=()
  while IFS=$'\t' read -r word _; do
    COMPREPLY+=("$(printf %q "$word")")
  done < <(ondura complete -- "${COMP_WORDS[@]:1:COMP_CWORD}" 2>/dev/null)
}
complete -o default -F _ondura ondura
)sh";

constexpr std::string_view kZsh = R"sh(#compdef ondura
# zsh completion for ondura: source <(ondura completion zsh)
_ondura() {
  local -a found
  local word description
  while IFS=$'\t' read -r word description; do
    found+=("${word//:/\\:}:$description")
  done < <(ondura complete -- "${(@)words[2,CURRENT]}" 2>/dev/null)
  if (( $#found )); then _describe ondura found; else _files; fi
}
compdef _ondura ondura
)sh";

constexpr std::string_view kFish = R"sh(# fish completion for ondura: ondura completion fish | source
function __ondura_complete
  set -l words (commandline -opc) (commandline -ct)
  ondura complete -- $words[2..-1] 2>/dev/null
end
complete -c ondura -a '(__ondura_complete)'
)sh";

constexpr std::array<std::pair<std::string_view, std::string_view>, 3> kScripts = {
    {{"bash", kBash}, {"zsh", kZsh}, {"fish", kFish}}};

void AddValues(const std::string& value_name, const std::vector<std::string>& words, const UserNames& users,
               std::vector<Candidate>& into) {
  if (value_name == "USER") {
    for (const std::string& user : users(words)) into.push_back({user, "user"});
  }
  if (value_name == "KEY") {
    for (const ProfileKey& key : AllProfileKeys()) into.push_back({std::string{key.name}, "key"});
  }
}

void AddOptions(const CLI::App* command, std::vector<Candidate>& into) {
  for (; command != nullptr; command = command->get_parent()) {
    for (const CLI::Option* option : OptionsOf(*command)) {
      const std::string name = LongNameOf(*option);
      // A command's own --help stands for those of the commands around it.
      if (std::ranges::find(into, name, &Candidate::word) != into.end()) continue;
      into.push_back({name, option->get_description()});
    }
  }
}

}  // namespace

std::vector<Candidate> CandidatesFor(const CLI::App& app, std::vector<std::string> words,
                                     const UserNames& users) {
  const std::string begun = words.empty() ? "" : words.back();
  if (!words.empty()) words.pop_back();
  const CommandLineWalk walk = WalkCommandLine(app, words);
  std::vector<Candidate> found;
  if (!walk.unknown_command.empty()) return found;
  if (walk.open_option != nullptr) {
    AddValues(walk.open_option->get_type_name(), words, users, found);
  } else if (begun.starts_with('-')) {
    AddOptions(walk.command, found);
  } else if (const auto commands = CommandsOf(*walk.command); !commands.empty()) {
    for (const CLI::App* one : commands) found.push_back({one->get_name(), one->get_description()});
  } else if (const auto values = PositionalsOf(*walk.command); walk.positionals.size() < values.size()) {
    AddValues(values[walk.positionals.size()]->get_name(true), words, users, found);
  }
  std::erase_if(found, [&](const Candidate& one) { return !one.word.starts_with(begun); });
  return found;
}

std::string_view CompletionScript(std::string_view shell) {
  const auto found =
      std::ranges::find(kScripts, shell, &std::pair<std::string_view, std::string_view>::first);
  return found == kScripts.end() ? "" : found->second;
}

}  // namespace ondura
