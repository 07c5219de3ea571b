#include "backupset/Utf16ListFile.h"

#include <bit>
#include <cstdint>
#include <cstring>

#include "text/utf16.h"
#include "util/TextFiles.h"

namespace ondura {

namespace {

static_assert(std::endian::native == std::endian::little, "the block is the file's bytes as it stands");

constexpr std::size_t kRun = 8;
constexpr std::uint64_t kHighBits = 0x8080808080808080;

bool IsAsciiRun(const char* text) {
  std::uint64_t run = 0;
  std::memcpy(&run, text, kRun);
  return (run & kHighBits) == 0;
}

}  // namespace

char16_t* WriteUtf16(std::string_view utf8, char16_t* into) {
  while (!utf8.empty()) {
    while (utf8.size() >= kRun && IsAsciiRun(utf8.data())) {
      for (std::size_t i = 0; i < kRun; ++i) into[i] = static_cast<char16_t>(utf8[i]);
      into += kRun;
      utf8.remove_prefix(kRun);
    }
    if (utf8.empty()) break;
    const DecodedCharacter next = DecodeWtf8(utf8);
    into = WriteUtf16Units(next, into);
    utf8.remove_prefix(next.bytes);
  }
  return into;
}

void Utf16ListFile::Open(std::string_view path) {
  Close();
  TextFiles{machine_.files, machine_.code_page}.CreateMissing(path, Encoding::kUtf16);
  writer_ = machine_.files.OpenAppender(path, IfMissing::kFail);
  failed_ = !writer_;
  block_.resize(kBlockUnits);
}

void Utf16ListFile::Close() {
  if (writer_) WriteOut();
  writer_.reset();
}

char16_t* Utf16ListFile::Reserve(std::size_t units) {
  if (used_ + units > kBlockUnits) WriteOut();
  if (units > block_.size()) block_.resize(units);
  return block_.data() + used_;
}

void Utf16ListFile::Commit(const char16_t* end) { used_ = static_cast<std::size_t>(end - block_.data()); }

void Utf16ListFile::KeepUp() {
  const LocalTime now = machine_.clock.Now();
  if (now == written_at_) return;
  WriteOut();
  written_at_ = now;
}

void Utf16ListFile::WriteOut() {
  if (used_ > 0 && !failed_) {
    failed_ = !writer_->Append({reinterpret_cast<const char*>(block_.data()), used_ * sizeof(char16_t)});
  }
  used_ = 0;
}

}  // namespace ondura
