#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "backupset/Exclusions.h"
#include "backupset/FolderWalk.h"
#include "backupset/PathIndex.h"
#include "platform/machine.h"
#include "profile/Installation.h"
#include "util/TextFiles.h"

namespace ondura {

// The excluded folders of the current user with their sizes, and what they take away from an item of the
// backup set.
class ExclusionSizes {
 public:
  ExclusionSizes(const Machine& machine, const Installation& installation, FolderWalk& walk)
      : machine_(machine),
        installation_(installation),
        walk_(walk),
        text_files_(machine.files, machine.code_page) {}

  // Reads the lists of excluded folders and files, works out each folder's size, and rewrites
  // atbkupExcludelistSize.txt where it exists.
  void Load();

  // Takes what is excluded of the item out of the total and out of its count `nCount`; returns the new
  // total, which is never below 0. An item in an excluded folder loses the whole of that folder's figures,
  // and of two excluded folders one within the other both sizes go.
  double SubtractExclusions(double nTotal, std::string_view sPath, double& nCount, ExclusionKind nKind);

 private:
  void ReadFolders();
  std::string MeasureFolder(std::string_view line, const std::string& key);
  void WriteSizes();
  void ReadFiles();
  std::vector<std::string> ReadList(std::string_view name);
  double FileSize(std::string_view path);
  [[nodiscard]] double StoredSize(std::size_t number) const;
  double CountNotes(std::vector<std::string> notes);
  double CountFiles(const std::string& note);

  Machine machine_;
  const Installation& installation_;
  FolderWalk& walk_;
  TextFiles text_files_;
  // Long paths and, parallel to them, sizes as text, in the order of atbkupExcludelist.txt.
  std::vector<std::string> paths_;
  std::vector<std::string> sizes_;
  std::vector<double> times_;       // how often a path is in the list, at its first place; else 0
  std::vector<std::string> files_;  // those that no excluded folder covers
  PathIndex folder_index_;          // of paths_, each once
  PathIndex file_index_;            // of files_
  // Of folders walked so far, by their lower-case paths.
  std::unordered_map<std::string, FolderTotals> counted_;
};

}  // namespace ondura
