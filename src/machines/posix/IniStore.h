#pragma once

#include <memory>
#include <string>
#include <unordered_map>

#include "machines/portable/CodePageTable.h"
#include "machines/portable/IniText.h"
#include "machines/posix/host_io.h"
#include "machines/posix/host_replace.h"

namespace ondura {

// Ini files by their host paths. A parsed file is kept for as long as its stamp stays, so that reading it
// again costs one look at the folder. A file that is not kept, because it was written just now or is far
// larger than any that is not damaged, is searched for the one key.
class IniStore {
 public:
  explicit IniStore(const CodePageTable& code_page) : code_page_(code_page) {}

  // Null when the file is missing or can't be read; LastError says which. A link is followed within
  // `folder` alone, here and in Save.
  std::shared_ptr<const IniText> Load(const std::string& host_path, const std::string& folder);

  // Replaces the file as a whole or makes it, and keeps its rights. `lock` is that
  // of the file's folder. False leaves what was there.
  bool Save(const std::string& host_path, const std::string& folder, const IniText& text,
            const FolderLock& lock);

 private:
  struct Parsed {
    FileStamp stamp;
    std::shared_ptr<const IniText> text;
  };

  void Remember(const std::string& host_path, Parsed parsed);

  const CodePageTable& code_page_;
  std::unordered_map<std::string, Parsed> parsed_;
  std::size_t remembered_bytes_ = 0;
};

}  // namespace ondura
