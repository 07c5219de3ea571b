#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "engines/common/Client.h"
#include "engines/common/candidate.h"

namespace ondura::engines {

// What the user has chosen to back up and to leave out, as the files of the user's folder say it.
class Selection {
 public:
  // `own_folders` belong to the store and are never taken; each ends in a backslash.
  Selection(Client& client, const std::vector<std::string>& own_folders);

  // True when nothing has been chosen at all.
  [[nodiscard]] bool IsEmpty() const { return items_.empty() && !by_ending_; }

  // Files and folders, as the user has chosen them; for a selection by ending the fixed drives.
  [[nodiscard]] const std::vector<std::string>& items() const { return items_; }

  // True when files are chosen by the ends of their names, which takes a walk to find them.
  [[nodiscard]] bool IsByEnding() const { return !endings_.empty(); }

  // Everything that is left out, in small letters: folders without a backslash at their ends.
  [[nodiscard]] std::vector<std::string> Exclusions() const;

  // Whether a file or folder of the selection is left out, itself or with a folder that it lies in.
  [[nodiscard]] bool IsExcluded(std::string_view path) const;

  struct Outcome {
    std::vector<Candidate> files;
    std::vector<std::string> missing;    // chosen, but not there or not readable
    std::vector<std::string> off_drive;  // links
    bool met_exclusion = false;
  };

  // Walks everything that has been chosen. `is_over` is asked before each folder and ends the walk early.
  Outcome Walk(const std::function<bool()>& is_over);

 private:
  void LoadItems();
  void LoadEndings();
  void LoadExclusions();
  void WalkFolder(std::string folder, Outcome& outcome, const std::function<bool()>& is_over);
  void TakeEntry(const std::string& folder, const FolderEntry& entry, std::vector<std::string>& queue,
                 Outcome& outcome);
  void TakeFile(const std::string& path, Outcome& outcome);
  [[nodiscard]] bool IsExcludedFolder(std::string_view folder) const;
  [[nodiscard]] bool LiesInExcludedFolder(std::string_view path) const;
  [[nodiscard]] bool HasWantedEnding(std::string_view name) const;

  Client& client_;
  std::vector<std::string> items_;
  bool by_ending_ = false;
  std::vector<std::string> endings_;
  std::unordered_set<std::string> excluded_folders_;  // lower case, with a backslash at the end
  std::unordered_set<std::string> excluded_files_;    // lower case
};

}  // namespace ondura::engines
