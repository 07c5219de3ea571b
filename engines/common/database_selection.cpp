#include "engines/common/database_selection.h"

#include "engine/engine_files.h"

namespace ondura::engines {

void NoteDatabaseSelection(Client& client) {
  using namespace engine_files;
  const Installation& installation = client.installation();
  Files& files = client.machine().files;
  for (const auto& [name, noted_name] : {std::pair{kSelectionList, kDatabaseSelection},
                                         std::pair{kAutomaticSelection, kDatabaseAutomaticSelection}}) {
    if (files.Exists(installation.UserFile(name))) {
      files.Copy(installation.UserFile(name), installation.UserFile(noted_name));
    }
  }
}

}  // namespace ondura::engines
