#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ondura::engines {

// The second door of an engine, for what a person asks of the store. The numbers of the component stay as
// they are.
//
//   ENGINE --door VERB USER [--NAME VALUE | --NAME= | WORD]...
//
// Answers are JSON objects on standard output, one a line, each with its "type"; a secret comes on standard
// input. Exit codes: 0 done; 1 failed, after an object of type "error" with the reason in "message"; 2 not a
// call. An engine says by the verb "offers" which others it knows.
inline constexpr std::string_view kDoorOption = "--door";

namespace door_verbs {
inline constexpr std::string_view kOffers = "offers";
inline constexpr std::string_view kSnapshots = "snapshots";
inline constexpr std::string_view kFiles = "files";
inline constexpr std::string_view kRestore = "restore";
inline constexpr std::string_view kVerify = "verify";
inline constexpr std::string_view kStore = "store";
inline constexpr std::string_view kAccept = "accept";
inline constexpr std::string_view kPassword = "change-password";
}  // namespace door_verbs

struct DoorCall {
  std::string verb;
  std::string user;
  std::vector<std::string> words;
  std::map<std::string, std::string> options;  // without the leading "--"

  [[nodiscard]] std::string Option(const std::string& name) const {
    const auto found = options.find(name);
    return found == options.end() ? std::string{} : found->second;
  }
  [[nodiscard]] bool Has(const std::string& name) const { return options.contains(name); }
};

// std::nullopt for a command line that does not come through this door.
std::optional<DoorCall> ParseDoorCall(const std::vector<std::string>& words);

}  // namespace ondura::engines
