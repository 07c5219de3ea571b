#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "platform/local_time.h"
#include "util/TextFiles.h"

namespace ondura::engines {

struct FileState {
  std::uint64_t size_bytes = 0;
  LocalTime modified;

  friend bool operator==(const FileState&, const FileState&) = default;
};

// Size and time of files by path, whatever its letter case. On disk one UTF-16 line a file: path, size and
// time, separated by "/", which no path holds.
class FileStates {
 public:
  void Put(std::string_view path, const FileState& state);

  std::optional<FileState> Find(std::string_view path) const;

  std::size_t size() const { return states_.size(); }

  // False where the file can't be read; lines of another form are passed over.
  bool Load(TextFiles& text_files, std::string_view path);

  bool Save(TextFiles& text_files, std::string_view path) const;

 private:
  struct Named {
    std::string path;
    FileState state;
  };
  std::unordered_map<std::string, Named> states_;
};

}  // namespace ondura::engines
