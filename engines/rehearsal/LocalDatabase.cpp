#include "engines/rehearsal/LocalDatabase.h"

#include "engine/engine_files.h"

namespace ondura::engines {

LocalDatabase::LocalDatabase(Client& client)
    : client_(client),
      folder_(client.installation().UserFile(engine_files::kDatabaseFolder)),
      path_(folder_ + "\\" + std::string{engine_files::kDatabase}) {}

bool LocalDatabase::Build(Vault& vault) {
  NoteSelection(engine_files::kSelectionList, engine_files::kDatabaseSelection);
  NoteSelection(engine_files::kAutomaticSelection, engine_files::kDatabaseAutomaticSelection);
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

void LocalDatabase::NoteSelection(std::string_view name, std::string_view noted_name) {
  const Installation& installation = client_.installation();
  if (!client_.machine().files.Exists(installation.UserFile(name))) return;
  client_.machine().files.Copy(installation.UserFile(name), installation.UserFile(noted_name));
}

}  // namespace ondura::engines
