#include "bench/generated_tree.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <ctime>
#include <random>
#include <stdexcept>
#include <string>

namespace ondura {

namespace {

constexpr std::size_t kFoldersInAFolder = 100;
constexpr std::time_t kThreeYears = 3L * 365 * 24 * 3600;

std::string Numbered(const char* word, std::size_t number, const char* ending) {
  std::string name(64, '\0');
  name.resize(
      static_cast<std::size_t>(std::snprintf(name.data(), name.size(), "%s %05zu%s", word, number, ending)));
  return name;
}

void MakeFile(const std::filesystem::path& path, std::mt19937& random, std::time_t newest) {
  const int file = open(path.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0644);
  if (file < 0 || ftruncate(file, static_cast<off_t>(random() % 4'000'000)) != 0) {
    throw std::runtime_error{"cannot make " + path.string()};
  }
  const std::time_t modified = newest - static_cast<std::time_t>(random() % kThreeYears);
  const timespec times[2] = {{modified, 0}, {modified, 0}};
  futimens(file, times);
  close(file);
}

}  // namespace

ScratchFolder::ScratchFolder() {
  std::string name = (std::filesystem::temp_directory_path() / "ondura-bench-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error{"cannot make " + name};
  path_ = name;
}

ScratchFolder::~ScratchFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

void GenerateTree(const std::filesystem::path& root, const TreeSize& size) {
  std::mt19937 random{42};
  const std::time_t newest = std::time(nullptr) - 24L * 3600;
  std::filesystem::path upper;
  for (std::size_t folder = 0; folder < size.folders; ++folder) {
    if (folder % kFoldersInAFolder == 0) upper = root / Numbered("department", folder, "");
    // The first of each hundred is the upper folder itself.
    const auto path = folder % kFoldersInAFolder == 0 ? upper : upper / Numbered("project", folder, "");
    std::filesystem::create_directories(path);
    for (std::size_t file = 0; file < size.files_per_folder; ++file) {
      MakeFile(path / Numbered("report", random() % 1000 * 100 + file, ".docx"), random, newest);
    }
  }
}

}  // namespace ondura
