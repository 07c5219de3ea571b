#pragma once

#include <cstddef>
#include <filesystem>

namespace ondura {

// A folder of its own that goes with this object.
class ScratchFolder {
 public:
  ScratchFolder();
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

struct TreeSize {
  std::size_t folders = 10'000;
  std::size_t files_per_folder = 20;

  [[nodiscard]] std::size_t Entries() const { return folders * (1 + files_per_folder); }
};

// Makes a tree of folders two levels deep under `root`, with files of many sizes and dates. The contents
// are holes, so that the tree takes no room.
void GenerateTree(const std::filesystem::path& root, const TreeSize& size);

}  // namespace ondura
