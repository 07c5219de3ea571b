#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Drives.h"
#include "platform/Files.h"
#include "platform/local_time.h"

namespace ondura {

enum class ListOrder { kByName, kReversed };

// What is left of a write that does not fit on the drive: nothing, or its first half where that fits.
enum class FullDisk { kKeepsNothing, kTearsWrites };

// The disks of a simulated machine: a tree of names that match without regard to letter case and keep the
// case they were made with. Doubled and trailing backslashes do not count.
class MemoryDisk {
 public:
  struct Node {
    std::string path;  // as made, with the parents' own letter case
    bool is_folder = false;
    bool is_read_only = false;
    bool refuses_access = false;
    bool leads_off_drive = false;
    bool is_foreign = false;  // made by a person without rights on the machine
    std::string bytes;
    LocalTime modified;
    std::uint64_t version = 0;  // grows with every change of any file
  };

  explicit MemoryDisk(std::function<LocalTime()> now);

  // Adds a drive such as "D:\", all of it free, or sets its kind and space anew. There is a fixed "C:\" from
  // the start.
  void PutDrive(std::string_view root, DriveKind kind, std::uint64_t free_bytes);
  void RemoveDrive(std::string_view root);  // with all it holds
  void SetFreeBytes(std::string_view root, std::uint64_t free_bytes);
  void SetTotalBytes(std::string_view root, std::uint64_t total_bytes);
  void SetFullDisk(FullDisk behaviour) { full_disk_ = behaviour; }

  // Put with all missing parents, whatever the flags of what is there say. An unknown drive is added.
  void PutFile(std::string_view path, std::string_view bytes);
  void PutFolder(std::string_view path);
  void Erase(std::string_view path);  // file or folder with contents

  // The flags are those of a file that is there; false for another.
  bool SetReadOnly(std::string_view path, bool is_read_only);
  void SetForeign(std::string_view path);  // the file of a person without rights on the machine
  bool SetModified(std::string_view path, LocalTime modified);
  // A file that can't be opened or removed, or a folder that can't be listed.
  bool SetRefusing(std::string_view path, bool refuses);

  // Makes a file a link to one on another drive: it is listed but does not open. False for a missing path.
  bool SetLeadsOffDrive(std::string_view path);

  void SetListOrder(ListOrder order) { list_order_ = order; }

  // The short form that a path has instead of its own, such as "C:\PROGRA~1".
  void SetShortPath(std::string_view path, std::string_view short_path);

  // For the ports. Null for what is not there.
  const Node* Find(std::string_view path) const;
  // Null where there is no file or it can't be opened.
  const Node* FindReadable(std::string_view path) const;
  // Sets the file's bytes, making it where it is missing. False when it may not be written or does not fit.
  bool Store(std::string_view path, std::string_view bytes);
  // Store for a file that is there: what does not fit as a whole leaves the old bytes.
  bool Replace(std::string_view path, std::string_view bytes);
  // Adds to a file that is there.
  bool Extend(std::string_view path, std::string_view bytes);
  // Gives `to` the bytes, time and read-only flag of `from`.
  bool Copy(std::string_view from, std::string_view to);
  bool MakeFolder(std::string_view path);
  bool RemoveFile(std::string_view path, Removal removal);
  bool RemoveFolder(std::string_view path, Removal removal);
  // The paths of what is directly in the folder, in the order of listing.
  std::vector<std::string> Children(std::string_view folder) const;
  std::vector<std::string> FilesUnder(std::string_view folder) const;
  std::vector<std::string> Roots() const;
  DriveKind KindOf(std::string_view root) const;
  std::optional<std::uint64_t> FreeBytes(std::string_view path) const;
  std::optional<std::uint64_t> TotalBytes(std::string_view path) const;
  std::string ShortPath(std::string_view path) const;

 private:
  struct Drive {
    DriveKind kind = DriveKind::kFixed;
    std::uint64_t free_bytes = 0;
    std::uint64_t total_bytes = 0;
  };
  using Nodes = std::map<std::string, Node, std::less<>>;

  Node* FindMutable(std::string_view path);
  Node& Make(std::string_view clean_path, bool is_folder);
  void MakeParents(std::string_view clean_path);
  bool CanBeMade(std::string_view clean_path) const;
  Drive* DriveOf(std::string_view path);
  const Drive* DriveWith(std::string_view path) const;
  std::string_view WhatFits(std::string_view path, std::string_view bytes, std::size_t freed_bytes);
  void SetBytes(Node& node, std::string_view kept, std::string_view added);
  void EraseNode(Nodes::iterator node);
  std::string Resolve(std::string_view path) const;

  std::function<LocalTime()> now_;
  Nodes nodes_;                                       // by folded path
  std::map<std::string, Drive, std::less<>> drives_;  // by folded root without backslash
  std::map<std::string, std::string> short_paths_;    // by folded full path
  std::uint64_t version_ = 0;
  ListOrder list_order_ = ListOrder::kByName;
  FullDisk full_disk_ = FullDisk::kKeepsNothing;
};

// Without doubled and trailing backslashes and the parts "." and "..", "/" taken for a backslash. "C:\"
// becomes "C:".
std::string CleanPath(std::string_view path);

}  // namespace ondura
