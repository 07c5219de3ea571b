#pragma once

#include <string>
#include <vector>

#include "platform/machine.h"
#include "profile/Installation.h"
#include "reporting/Trace.h"
#include "util/FolderNames.h"
#include "util/TextFiles.h"

namespace ondura {

// The flags "0" and "1" of the item list.
enum class ItemKind { kFile = 0, kFolder = 1 };

struct SelectedItem {
  std::string path;  // a folder without trailing backslash, a drive such as "C:", or a file
  ItemKind kind = ItemKind::kFile;

  friend bool operator==(const SelectedItem&, const SelectedItem&) = default;
};

// The current user's choice of what to back up, as the user interface wrote it.
class Selection {
 public:
  Selection(const Machine& machine, const Installation& installation, Trace& trace)
      : machine_(machine),
        installation_(installation),
        trace_(trace),
        text_files_(machine.files, machine.code_page) {}

  // True when a choice has been made: by automatic selection, or with a first line in the list.
  bool HasBackupSelection();

  // The items of atbkupfolderlist.txt in their order; also traces "  [Backup set]:". Empty when the list
  // can't be read.
  std::vector<SelectedItem> ReadItems();

 private:
  void AddLine(std::string_view line, FolderNames& names, std::vector<SelectedItem>& items);
  void AddPath(std::string path, FolderNames& names, std::vector<SelectedItem>& items);

  Machine machine_;
  const Installation& installation_;
  Trace& trace_;
  TextFiles text_files_;
};

struct DisplaySize {
  double size_bytes = 0;
  double files = 0;
};

// The current user's TotalDisplaySize.txt: the size on the first line, the count of files on the second.
class TotalDisplaySize {
 public:
  TotalDisplaySize(const Machine& machine, const Installation& installation)
      : files_(machine.files), text_files_(machine.files, machine.code_page), installation_(installation) {}

  // A line that is missing or no number reads as 0.
  DisplaySize Read();

  // Adds to both lines; makes the file when it is missing.
  void Add(const DisplaySize& more);

  // Makes the file anew and empty, also where it is read-only.
  void Recreate();

  void Write(const DisplaySize& size);

 private:
  Files& files_;
  TextFiles text_files_;
  const Installation& installation_;
};

}  // namespace ondura
