#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Files.h"

namespace ondura {

// The lines of a UTF-16 text file from the last to the first, split at CR LF and at nothing else. What
// follows the last CR LF is a line too, if an empty one. The file is read in blocks, so that memory is taken
// for one block or for one line, whichever is longer.
class LinesFromEnd {
 public:
  // Reads the file once to count its lines. A file that can't be read has none.
  LinesFromEnd(Files& files, std::string_view path);

  // The index of the last line, counted from 0; -1 without lines.
  [[nodiscard]] std::int64_t HighestIndex() const { return highest_index_; }

  // The next line nearer to the beginning. Nothing before the first line, and where reading fails.
  std::optional<std::string> Previous();

  // Goes back to the last line.
  void Rewind();

 private:
  std::optional<std::int64_t> CountBreaks();
  std::optional<std::string> ReadBlock(std::uint64_t at, std::size_t bytes);
  bool ReadMore();

  Files& files_;
  std::string path_;
  std::uint64_t end_ = 0;  // of the text in the file, in bytes
  std::int64_t highest_index_ = -1;

  std::string block_;            // the end of what is still to be given
  std::uint64_t block_at_ = 0;   // where the block begins in the file
  std::size_t search_from_ = 0;  // no line end begins after this byte of the block
  bool is_over_ = true;
};

}  // namespace ondura
