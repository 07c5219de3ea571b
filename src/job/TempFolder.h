#pragma once

#include <string>
#include <string_view>

#include "platform/machine.h"
#include "profile/Installation.h"

namespace ondura {

// The folder that a command of the engine gets for its own files, and the files of the older interface in
// it.
class TempFolder {
 public:
  // `path` keeps the folder's path; it outlives the folder.
  TempFolder(const Machine& machine, const Installation& installation, std::string& path)
      : machine_(machine), installation_(installation), path_(path) {}

  // Makes the user's folder, `Temp` in it and a folder named by the present time and `sPostfix`, each only
  // when missing.
  void CreateTempFolder(std::string_view sCurrentUser, std::string_view sPostfix);

  [[nodiscard]] const std::string& GetTempFolderPath() const { return path_; }

  // Deletes the folder and keeps its path.
  void DeleteTempFolder();

  // Deletes DLLOutput.txt, DLLOutput1.txt, DLLInput.txt and DLLOutputInfo.txt in the folder.
  void DeleteInputOutFilesInTempFd();

 private:
  Machine machine_;
  const Installation& installation_;
  std::string& path_;
};

// The present time as it names folders: hour, minute and second, then minute and second once more.
inline constexpr std::string_view kStampFolderPicture = "H_mm_ss_ms";

}  // namespace ondura
