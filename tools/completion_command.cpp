#include <algorithm>
#include <exception>
#include <iostream>
#include <memory>

#include "Failure.h"
#include "OpenedMachine.h"
#include "commands.h"
#include "usage/completion.h"
#include "usage/manual.h"

namespace ondura {

namespace {

// Completion never complains: where the machine can't be asked, there are no names.
std::vector<std::string> UsersOf(Globals globals, const std::vector<std::string>& words) {
  const auto root = std::ranges::find(words, "--root");
  if (root != words.end() && root + 1 != words.end()) globals.root = *(root + 1);
  try {
    return OpenedMachine(globals).Users();
  } catch (const std::exception&) {
    return {};
  }
}

}  // namespace

void AddCompletionCommands(CLI::App& app, const Globals& globals) {
  auto& script = *app.add_subcommand("completion", "Prints the script that completes commands in a shell");
  auto shell = std::make_shared<std::string>();
  script.add_option("SHELL", *shell, "bash, zsh or fish")->required();
  script.footer("Example: source <(ondura completion bash)");
  script.callback([shell] {
    const std::string_view text = CompletionScript(*shell);
    if (text.empty()) {
      throw Failure(Exit::kUsage, "there is no completion for '" + *shell + "'; name bash, zsh or fish");
    }
    std::cout << text;
  });

  // For these scripts; no person types it.
  auto& complete = *app.add_subcommand("complete", "Prints what may come next")->group("");
  auto words = std::make_shared<std::vector<std::string>>();
  complete.add_option("WORDS", *words, "The words so far, the last one as far as it was typed");
  complete.callback([&app, &globals, words] {
    const auto users = [&](const std::vector<std::string>& so_far) { return UsersOf(globals, so_far); };
    for (const Candidate& one : CandidatesFor(app, *words, users)) {
      std::cout << one.word << "\t" << one.description << "\n";
    }
  });

  auto& manual = *app.add_subcommand("man", "Prints the manual page");
  manual.footer("Example: ondura man | man -l -");
  manual.callback([&app] { std::cout << ManualPage(app, ONDURA_VERSION); });
}

}  // namespace ondura
