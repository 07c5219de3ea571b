#include "profile/user_defaults.h"

#include <array>
#include <string>

namespace ondura {

namespace {

constexpr std::array<std::string_view, 7> kDefaultFiles{
    "scheduleData.txt",        kSelectionListFile,      "atbkupExcludeFile.txt", "atbkupExcludeFilePath.txt",
    "atbkupExcludeFolder.txt", "atbkupExcludelist.txt", "SimpleAutoPath.ini"};

}  // namespace

void CopyDefaults(const Machine& machine, const Installation& installation, std::string_view user) {
  const std::string from_folder = installation.FolderOf("") + "\\";
  const std::string to_folder = installation.FolderOf(user) + "\\";
  for (const std::string_view name : kDefaultFiles) {
    const std::string from = from_folder + std::string{name};
    const std::string to = to_folder + std::string{name};
    if (!machine.files.Exists(to) && machine.files.Exists(from)) machine.files.Copy(from, to);
  }
}

}  // namespace ondura
