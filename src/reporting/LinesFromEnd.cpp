#include "reporting/LinesFromEnd.h"

#include <algorithm>

#include "text/utf16.h"

namespace ondura {

namespace {

using namespace std::string_view_literals;

constexpr std::size_t kBlockBytes = std::size_t{256} * 1024;
constexpr std::size_t kUnitBytes = 2;
constexpr auto kCarriageReturn = "\r\0"sv;
constexpr auto kLineFeed = "\n\0"sv;
constexpr auto kBreak = "\r\0\n\0"sv;

// The same bytes may lie across three other characters, so only those at whole units count.
std::size_t FindBreak(std::string_view bytes, std::size_t from) {
  std::size_t at = bytes.find(kBreak, from);
  while (at != std::string_view::npos && at % kUnitBytes != 0) at = bytes.find(kBreak, at + 1);
  return at;
}

std::size_t FindLastBreak(std::string_view bytes, std::size_t from) {
  std::size_t at = bytes.rfind(kBreak, from);
  while (at != std::string_view::npos && at % kUnitBytes != 0) at = bytes.rfind(kBreak, at - 1);
  return at;
}

}  // namespace

LinesFromEnd::LinesFromEnd(Files& files, std::string_view path) : files_(files), path_(path) {
  end_ = files_.Size(path_).value_or(0) / kUnitBytes * kUnitBytes;
  const auto breaks = CountBreaks();
  if (breaks) highest_index_ = *breaks;
  Rewind();
}

std::optional<std::int64_t> LinesFromEnd::CountBreaks() {
  std::int64_t breaks = 0;
  bool is_behind_return = false;
  for (std::uint64_t at = 0; at < end_; at += kBlockBytes) {
    const auto bytes = std::min<std::uint64_t>(kBlockBytes, end_ - at);
    const auto block = ReadBlock(at, static_cast<std::size_t>(bytes));
    if (!block) return std::nullopt;
    if (is_behind_return && block->starts_with(kLineFeed)) ++breaks;
    for (std::size_t found = FindBreak(*block, 0); found != std::string::npos;) {
      ++breaks;
      found = FindBreak(*block, found + kBreak.size());
    }
    is_behind_return = block->ends_with(kCarriageReturn);
  }
  return breaks;
}

std::optional<std::string> LinesFromEnd::ReadBlock(std::uint64_t at, std::size_t bytes) {
  auto block = files_.ReadPart(path_, at, bytes);
  return block && block->size() == bytes ? block : std::nullopt;
}

void LinesFromEnd::Rewind() {
  block_.clear();
  block_at_ = end_;
  search_from_ = 0;
  is_over_ = highest_index_ < 0;
}

std::optional<std::string> LinesFromEnd::Previous() {
  while (!is_over_) {
    if (const std::size_t at = FindLastBreak(block_, search_from_); at != std::string::npos) {
      // In front of a line that begins with a mark of its own, one more keeps it in the text.
      std::string line = FromUtf16(std::string{kUtf16Mark}.append(block_, at + kBreak.size()));
      block_.resize(at);
      search_from_ = at;
      return line;
    }
    if (block_at_ == 0) {
      is_over_ = true;
      return FromUtf16(block_);
    }
    is_over_ = !ReadMore();
  }
  return std::nullopt;
}

// A line longer than a block doubles the step, so that its bytes are moved only a few times.
bool LinesFromEnd::ReadMore() {
  const auto wanted = std::min<std::uint64_t>(std::max(kBlockBytes, block_.size()), block_at_);
  const auto bytes = static_cast<std::size_t>(wanted);
  auto block = ReadBlock(block_at_ - bytes, bytes);
  if (!block) return false;
  // A line end may lie across the border.
  search_from_ = block->size();
  block_at_ -= bytes;
  block_.insert(0, *block);
  return true;
}

}  // namespace ondura
