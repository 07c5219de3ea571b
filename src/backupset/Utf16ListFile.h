#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

#include "platform/machine.h"

namespace ondura {

// A UTF-16 text file that grows by many short lines while another program reads it. Text goes out in blocks
// of at most 64 KiB, whole lines each. The first write that fails is the last one.
class Utf16ListFile {
 public:
  explicit Utf16ListFile(const Machine& machine) : machine_(machine) {}

  // Continues the file, which is made with its mark when it is missing.
  void Open(std::string_view path);

  // The file could not be opened, or not all of it was written: what has been added since is lost.
  [[nodiscard]] bool failed() const { return failed_; }

  // Writes out what is waiting.
  void Close();

  // Room for a line of at most `units`; Commit says where it ends.
  char16_t* Reserve(std::size_t units);
  void Commit(const char16_t* end);

  // Writes out what has waited for a second. To be called now and then, also while no line comes.
  void KeepUp();

 private:
  static constexpr std::size_t kBlockUnits = 32'768;

  void WriteOut();

  Machine machine_;
  std::unique_ptr<FileWriter> writer_;
  std::vector<char16_t> block_;
  std::size_t used_ = 0;
  bool failed_ = false;
  LocalTime written_at_;
};

// Writes the text as UTF-16, at most one unit a byte; returns the place after it. A lone surrogate stays
// one; another byte that is not UTF-8 becomes U+FFFD.
char16_t* WriteUtf16(std::string_view utf8, char16_t* into);

}  // namespace ondura
