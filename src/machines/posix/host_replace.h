#pragma once

#include <string>
#include <string_view>

#include "machines/posix/host_io.h"

namespace ondura {

// Holds the folder of a file for one change, so that two processes that change it at the same moment do not
// lose one of the changes: on Windows the platform does the same within one call.
class FolderLock {
 public:
  explicit FolderLock(const std::string& host_file);

  // False if a process that was stopped in the middle of a change keeps the folder for too long.
  [[nodiscard]] bool held() const { return held_; }

 private:
  Fd folder_;
  bool held_ = false;
};

// Makes the file `target`, which is no link, or replaces it by one with the same rights: the new content is
// written beside it and then takes its name, so that a kill or a full disk at any moment leaves the old
// content whole. False leaves it, too. `lock` is that of the folder.
enum class OnDisk {
  kSoon,
  kFirst
};  // when the bytes have to be there: the system decides, or before the name
bool WriteBeside(const std::string& target, std::string_view bytes, const FolderLock& lock, OnDisk when);

// Writes over the content of a file in place, with the room that more bytes need set aside first, and cuts it
// to its length last. For what must be written though the disk has no room for a second file.
bool WriteInPlace(const Fd& file, std::string_view bytes);

// Replaces the content of a file that is open for writing, by WriteBeside where that can be done. Otherwise
// (several links, no right to the folder, no room for both) by WriteInPlace. False leaves the old content,
// unless the process is killed within that.
bool ReplaceContent(const Fd& old, std::string_view bytes);

}  // namespace ondura
