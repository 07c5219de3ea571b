#include "job/TempFolder.h"

#include <initializer_list>

#include "engine/engine_files.h"
#include "util/date_text.h"

namespace ondura {

void TempFolder::CreateTempFolder(std::string_view sCurrentUser, std::string_view sPostfix) {
  std::string path = installation_.FolderOf(sCurrentUser);
  machine_.folders.Make(path);
  path += "\\Temp";
  machine_.folders.Make(path);
  path += "\\" + FormatDate(kStampFolderPicture, machine_.clock.Now());
  path += sPostfix;
  machine_.folders.Make(path);
  path_ = path;
}

void TempFolder::DeleteTempFolder() {
  if (!path_.empty() && machine_.folders.Exists(path_)) machine_.folders.Remove(path_, Removal::kPlain);
}

void TempFolder::DeleteInputOutFilesInTempFd() {
  using namespace engine_files;
  for (const std::string_view name : {kOutput, kPortOutput, kInput, kOutputInfo}) {
    machine_.files.Remove(path_ + "\\" + std::string{name}, Removal::kPlain);
  }
}

}  // namespace ondura
