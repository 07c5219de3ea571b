#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

#include "platform/Files.h"
#include "platform/local_time.h"

namespace ondura {

struct FolderEntry {
  std::string_view name;  // UTF-8, without the folder; valid during the visit only
  bool is_folder = false;
  std::uint64_t size_bytes = 0;  // 0 for a folder
  LocalTime modified;
  // A link to a file on another drive or off the machine. It is shown so that somebody can say so; as a file
  // it does not exist.
  bool leads_off_drive = false;
};

enum class Visit { kContinue, kStop };

// Folders and what is in them.
//
// On Windows: FindFirstFileW, FindNextFileW and FindClose; CreateDirectoryW; RemoveDirectoryW under the
// contents removed one by one.
class Folders {
 public:
  virtual ~Folders() = default;

  // True for a folder; false for a file and for a path that does not exist. A drive's root ("C:\" or "C:") is
  // a folder.
  virtual bool Exists(std::string_view path) = 0;

  // Makes the last part of `path`. False when it is there already or its parent is not.
  virtual bool Make(std::string_view path) = 0;

  // Removes the folder with all it holds. False when any of it stayed, and for the root of a drive or of a
  // network share ("\\server\share"), which stays with all that is on it.
  virtual bool Remove(std::string_view path, Removal removal) = 0;

  // Shows every entry but "." and ".." in no promised order, one at a time, until the visitor stops it. An
  // entry that vanishes meanwhile is left out, and so is a link to a folder (a junction, a directory link):
  // it may lead to a folder above, and a walk that follows it never ends. A mounted volume is a folder.
  // False when the folder can't be listed.
  virtual bool List(std::string_view path, const std::function<Visit(const FolderEntry&)>& visit) = 0;
};

}  // namespace ondura
