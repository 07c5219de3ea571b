#include "engines/rehearsal/LocalDatabase.h"

#include "engine/engine_files.h"
#include "engines/common/database_selection.h"

namespace ondura::engines {

LocalDatabase::LocalDatabase(Client& client)
    : client_(client),
      folder_(client.installation().UserFile(engine_files::kDatabaseFolder)),
      path_(folder_ + "\\" + std::string{engine_files::kDatabase}) {}

bool LocalDatabase::Build(Vault& vault) {
  NoteDatabaseSelection(client_);
  return Save(vault.States());
}

FileStates LocalDatabase::LoadOrBuild(Vault& vault) {
  FileStates states;
  if (!states.Load(client_.text_files(), path_)) {
    Build(vault);
    states = vault.States();
  }
  return states;
}

bool LocalDatabase::Save(const FileStates& states) {
  client_.machine().folders.Make(folder_);
  return states.Save(client_.text_files(), path_);
}

void LocalDatabase::Remove() { client_.machine().files.Remove(path_, Removal::kForce); }

}  // namespace ondura::engines
