#pragma once

#include <string>
#include <string_view>

#include "platform/machine.h"

namespace ondura {

// A folder for one test, gone with all it holds when the test ends.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  // In the letter case that the system has for it, without a backslash at the end.
  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  std::string path_;
};

// True where the calls are Wine's and not those of Windows itself.
bool IsWine();

// Makes a junction at `path`, or what stands for one under Wine: a link of its host.
bool PutFolderLink(std::string_view path, std::string_view folder);

// The folder of this program, with its backslash.
std::string FolderOfTests();

// Starts the tool that lives for `lifetime` and leaves with `exit_code`, copied to `path` first.
LaunchRequest PutTool(std::string_view path, std::chrono::milliseconds lifetime, int exit_code);

}  // namespace ondura
