#include "util/TextFiles.h"

#include <algorithm>
#include <cstddef>

#include "text/utf16.h"

namespace ondura {

namespace {

// A first line longer than this is not one of ours; what is cut off does not matter to any reader.
constexpr std::size_t kFirstLineLimitBytes = 4096;

// A file of more lines is damaged, and a text of its own for each of them would fill the memory.
constexpr std::ptrdiff_t kMostLines = 2'000'000;

}  // namespace

std::string_view TakeLine(std::string_view& text) {
  const auto end = text.find('\n');
  std::string_view line = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

std::vector<std::string> LinesOf(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) lines.emplace_back(TakeLine(text));
  return lines;
}

std::optional<std::string> TextFiles::Read(std::string_view path, Encoding encoding) {
  const auto bytes = files_.Read(path);
  if (!bytes) return std::nullopt;
  return Decode(*bytes, encoding);
}

std::optional<std::string> TextFiles::ReadTrusted(std::string_view path, Encoding encoding) {
  const auto bytes = files_.ReadTrusted(path);
  if (!bytes) return std::nullopt;
  return Decode(*bytes, encoding);
}

std::optional<std::vector<std::string>> TextFiles::ReadLines(std::string_view path, Encoding encoding) {
  const auto text = Read(path, encoding);
  if (!text || std::count(text->begin(), text->end(), '\n') > kMostLines) return std::nullopt;
  return LinesOf(*text);
}

std::optional<std::string> TextFiles::ReadFirstLine(std::string_view path, Encoding encoding) {
  const auto head = files_.ReadHead(path, kFirstLineLimitBytes);
  if (!head) return std::nullopt;
  const auto lines = LinesOf(Decode(*head, encoding));
  return lines.empty() ? std::string{} : lines.front();
}

bool TextFiles::Write(std::string_view path, std::string_view text, Encoding encoding) {
  std::string bytes = Encode(text, encoding);
  if (encoding == Encoding::kUtf16) bytes.insert(0, kUtf16Mark);
  return files_.Write(path, bytes, IfPresent::kReplace);
}

bool TextFiles::CreateMissing(std::string_view path, Encoding encoding) {
  return files_.Write(path, encoding == Encoding::kUtf16 ? kUtf16Mark : std::string_view{}, IfPresent::kFail);
}

bool TextFiles::Append(std::string_view path, std::string_view text, Encoding encoding,
                       IfMissing if_missing) {
  const std::string bytes = Encode(text, encoding);
  if (files_.Append(path, bytes, IfMissing::kFail)) return true;
  if (if_missing == IfMissing::kFail) return false;
  return CreateMissing(path, encoding) && files_.Append(path, bytes, IfMissing::kFail);
}

std::string TextFiles::Encode(std::string_view text, Encoding encoding) {
  return encoding == Encoding::kUtf16 ? ToUtf16(text) : code_page_.FromUtf8(text);
}

std::string TextFiles::Decode(std::string_view bytes, Encoding encoding) {
  return encoding == Encoding::kUtf16 ? FromUtf16(bytes) : code_page_.ToUtf8(bytes);
}

}  // namespace ondura
