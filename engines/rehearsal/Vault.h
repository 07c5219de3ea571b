#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>

#include "engine/engine_command.h"
#include "engine/engine_results.h"
#include "engines/common/Client.h"
#include "engines/rehearsal/FileStates.h"
#include "platform/machine.h"

namespace ondura::engines {

// One user's place on the server "localhost": a folder that mirrors drives and paths ("C:\dir\file" is
// "<folder>C\dir\file"), with account.ini beside them.
//
// account.ini remembers digests of the passwords of the first contact and the space that the user may
// use ("Max"). Its section Rehearsal can hold a result for a command ("51=-416"), which the engine then
// answers with and does nothing.
class Vault {
 public:
  Vault(const Machine& machine, std::string_view folder);

  // Lets the user in, or says why not. The first contact makes the vault.
  EngineResult Enter(const Account& account);

  // The result that is to be rehearsed for the command.
  std::optional<int> RehearsedResult(EngineCommand command);

  // The address to name as the one whose backup runs: "MultipleIP" of section Rehearsal.
  std::string RehearsedAddress();

  // Where the copy of the file is kept.
  std::string PathOf(std::string_view path) const;

  // Copies the file with its time. False when it can't be read or the copy can't be written.
  bool Store(std::string_view path);

  // Every copy in the vault, by its original's path.
  FileStates States();

  std::uint64_t UsedBytes();

  // Whether the last transfer found no room.
  bool IsFull() { return machine_.profiles.ReadString({account_file_, "Account", "Full"}) == "1"; }
  void SetFull(bool is_full) {
    if (is_full != IsFull())
      machine_.profiles.WriteString({account_file_, "Account", "Full"}, is_full ? "1" : "0");
  }

  std::uint64_t MaxBytes(std::uint64_t fallback);

 private:
  bool MakeFolders(std::string_view folder);
  bool IsRemembered(std::string_view key, const Account& account, std::string_view secret);

  Machine machine_;
  std::string folder_;
  std::string account_file_;
  std::unordered_set<std::string> made_folders_;
};

// Where the current user's vault is.
std::string VaultFolder(const Installation& installation);

}  // namespace ondura::engines
