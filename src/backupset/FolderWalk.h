#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>

#include "platform/machine.h"

namespace ondura {

// What is below a folder. Sizes are doubles, as all sizes that are shown.
struct FolderTotals {
  double size_bytes = 0;  // 0 of a mere count
  double files = 0;
  double folders = 0;       // listed, the root among them
  std::int64_t pauses = 0;  // of a walk that leaves the processor to others now and then
  bool is_complete = true;  // false when a folder could not be listed; the rest is in the numbers

  // The size where it is known whole, else 0.
  [[nodiscard]] double WholeSize() const { return is_complete ? size_bytes : 0; }
};

// Adds up folders without recursion: a queue of folders serves each walk. Nothing is below a root that is
// not there.
class FolderWalk {
 public:
  explicit FolderWalk(const Machine& machine) : machine_(machine) {}

  // Size and count of all below `root`, and the count alone. With pauses, because a large tree takes
  // minutes.
  FolderTotals Measure(std::string_view root);
  FolderTotals Count(std::string_view root);

  // Size and count in one go: makes no pause and ends at the first folder that can't be listed.
  FolderTotals AddUp(std::string_view root);

  // For a drive that reports no figures of its own: the whole sizes of the folders and files directly below
  // the root.
  double GetMappedDriveSize(std::string_view sRoot);

  // Makes the pauses of a walk whose figures are known already.
  void PauseAgain(const FolderTotals& totals) { Pause(totals.pauses); }

 private:
  enum class Take { kSizeAndCount, kCount };

  void Begin(std::string_view root);
  void ScanFolderForSize() { ListNext(Take::kSizeAndCount); }
  void CountFolderFiles() { ListNext(Take::kCount); }
  void ListNext(Take take);
  void AddSubfolder(std::string_view folder, std::string_view name);
  void Pause(std::int64_t times);

  Machine machine_;
  std::deque<std::string> queue_;  // each ends in a backslash
  FolderTotals totals_;
};

}  // namespace ondura
