#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "platform/machine.h"
#include "profile/Installation.h"
#include "profile/Transfer.h"
#include "util/TextFiles.h"

namespace ondura {

enum class ExclusionKind { kFolder = 1, kFile = 2 };

// What a look-up has learnt about a folder and its parents: a walk carries it from a folder to its entries,
// so that each step hashes one name only.
struct FolderKey {
  static constexpr std::uint32_t kNone = std::numeric_limits<std::uint32_t>::max();

  std::uint64_t hash = 0xcbf29ce484222325;  // of the lower-case path so far
  std::uint32_t exclusion = kNone;          // the first entry of the list that covers the folder
};

// The folders and files that the user has left out, and which of them really applied.
//
// A look-up costs one hash of the path, however long the lists are, and allocates nothing; its answer is
// the first entry of the list that covers the path, letter case aside.
class Exclusions {
 public:
  Exclusions(const Machine& machine, const Installation& installation, const Transfer& transfer)
      : text_files_(machine.files, machine.code_page), installation_(installation), transfer_(transfer) {}

  // Reads the current user's two lists, writes `Excluded` "0" and empties the list of applied exclusions.
  void Load();

  // Forgets the lists and what applied.
  void Clear();

  // The entry that covers the path, or the empty text. A folder entry covers the folder and all below it,
  // a file entry that file. The first hit since Load writes `Excluded` "1".
  std::string_view FindExclusion(ExclusionKind nKind, std::string_view sPath);

  // The same for the entries of a folder whose text ends in a backslash and whose key is `folder`. For a
  // subfolder `key` becomes its own key.
  FolderKey KeyOf(std::string_view folder_text);
  std::string_view FindFolder(std::string_view folder_text, const FolderKey& folder, std::string_view name,
                              FolderKey& key);
  std::string_view FindFile(std::string_view folder_text, const FolderKey& folder, std::string_view name);

  // Notes an entry as applied unless it is noted already.
  void AddAppliedExclusion(std::string_view sPath);

  // In the order in which they applied.
  [[nodiscard]] const std::vector<std::string>& Applied() const { return applied_; }
  void ClearApplied();

 private:
  // Entries by the hash of their lower-case text.
  struct List {
    std::vector<std::string> entries;
    std::vector<std::string> paths;  // of the entries; a folder's ends in a backslash
    std::unordered_multimap<std::uint64_t, std::uint32_t> by_hash;

    void Clear();
    void Add(std::string entry, std::string path);
    [[nodiscard]] std::uint32_t Find(std::uint64_t hash, std::string_view path) const;
  };

  void LoadList(std::string_view file_name, ExclusionKind kind, List& list);
  FolderKey Extend(const FolderKey& key, std::string_view path, std::size_t from) const;
  std::string_view Hit(const List& list, std::uint32_t entry);

  TextFiles text_files_;
  const Installation& installation_;
  const Transfer& transfer_;
  List folders_;
  List files_;
  std::vector<std::string> applied_;
  std::unordered_set<std::string> applied_set_;
  std::string path_;  // the path of the look-up under way
  bool hit_written_ = false;
};

}  // namespace ondura
