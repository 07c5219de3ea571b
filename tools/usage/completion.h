#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace ondura {

// A word that may come next, and what it is for.
struct Candidate {
  std::string word;
  std::string description;
};

// The users of the machine that the words so far name; empty where there is none.
using UserNames = std::function<std::vector<std::string>(const std::vector<std::string>& words)>;

// What may stand in place of the last of `words`, which may be empty or begun. Nothing where only the person
// can know, such as a path of the host.
std::vector<Candidate> CandidatesFor(const CLI::App& app, std::vector<std::string> words,
                                     const UserNames& users);

// The script that makes a shell ask `ondura complete`: bash, zsh or fish. Empty for another.
std::string_view CompletionScript(std::string_view shell);

}  // namespace ondura
