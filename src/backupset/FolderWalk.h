#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>

#include "platform/machine.h"

namespace ondura {

// What is below a folder. Sizes are doubles, as all sizes that are shown.
struct FolderTotals {
  double size_bytes = 0;
  double files = 0;
  double folders = 0;       // listed, the root among them
  bool is_complete = true;  // false when a folder could not be listed; the rest is in the numbers
};

// Adds up folders without recursion: a queue of folders serves each walk. The walks with pauses leave the
// processor to others now and then, because a large backup set takes minutes. Nothing is below a root that
// is not there.
class FolderWalk {
 public:
  explicit FolderWalk(const Machine& machine) : machine_(machine) {}

  // Size and count of all below `root`, with pauses.
  FolderTotals Measure(std::string_view root);

  // The count alone, with the same pauses.
  double Count(std::string_view root);

  // The size in one go. 0 as soon as one folder of the tree can't be listed: it is known whole or not at
  // all.
  double FolderSize(std::string_view root);

  // For a drive that tells no figures of its own: the sizes of the folders and files directly below the
  // root, each for itself.
  double GetMappedDriveSize(std::string_view sRoot);

 private:
  enum class Take { kSizeAndCount, kCount };

  void Begin(std::string_view root);
  void ScanFolderForSize();
  void CountFolderFiles();
  // The number of entries in the folder.
  std::size_t ListNext(Take take);
  void AddSubfolder(std::string_view folder, std::string_view name);
  void PauseAfterPasses();

  Machine machine_;
  std::deque<std::string> queue_;  // each ends in a backslash
  FolderTotals totals_;
};

}  // namespace ondura
