#pragma once

#include <string>

#include "engines/common/Client.h"
#include "engines/rehearsal/Vault.h"

namespace ondura::engines {

// The local database of what has been backed up: OnduraLDB.Ond in the user's folder LDB.
class LocalDatabase {
 public:
  explicit LocalDatabase(Client& client);

  // Builds the database from what the vault holds, and notes with which selection that was.
  bool Build(Vault& vault);

  // What the database knows; builds it first if it is missing.
  FileStates LoadOrBuild(Vault& vault);

  bool Save(const FileStates& states);

  void Remove();

 private:
  Client& client_;
  std::string folder_;
  std::string path_;
};

}  // namespace ondura::engines
