#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "job/EngineFiles.h"
#include "job/JobServices.h"
#include "job/TempFolder.h"

namespace ondura {

// One run of the engine for a host that only wants to know whether it works; it serves a user of its own.
class CDummyCall {
 public:
  explicit CDummyCall(JobServices& services)
      : services_(services), temp_folder_(services.machine, services.installation, temp_folder_path_) {}

  // Runs `sExeName` of the install folder with command 12 and returns its result. The schedule file path of
  // the component stays on the call's own folder afterwards.
  double DoDummycall(std::string_view sExeName);

  void CreateTempFolder(std::string_view sCurrentUser, std::string_view sPostfix) {
    temp_folder_.CreateTempFolder(sCurrentUser, sPostfix);
  }
  [[nodiscard]] const std::string& GetTempFolderPath() const { return temp_folder_.GetTempFolderPath(); }
  void DeleteInputOutFilesInTempFd() { temp_folder_.DeleteInputOutFilesInTempFd(); }
  void DeleteTempFolder() { temp_folder_.DeleteTempFolder(); }

  // DLLOutput.txt of the temp folder as a success, or DLLOutputInfo.txt as a failure with its description.
  EngineFileResult ResdDLLOutputFile();

 private:
  JobServices& services_;
  std::string temp_folder_path_;
  TempFolder temp_folder_;
};

}  // namespace ondura
