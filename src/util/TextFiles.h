#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/CodePage.h"
#include "platform/Files.h"

namespace ondura {

inline constexpr std::string_view kLineEnd = "\r\n";

// kUtf16 is little endian after a byte-order mark.
enum class Encoding { kCodePage, kUtf16 };

// Text files as the scripting file-system object reads and writes them. Line ends are part of what is
// written; reading takes CR LF and LF, and a last line needs none.
class TextFiles {
 public:
  TextFiles(Files& files, CodePage& code_page) : files_(files), code_page_(code_page) {}

  // The whole text. std::nullopt when the file can't be read.
  std::optional<std::string> Read(std::string_view path, Encoding encoding);

  // The whole text of a file that only those with every right on the machine can have made; nothing
  // otherwise.
  std::optional<std::string> ReadTrusted(std::string_view path, Encoding encoding);

  // Nothing too for a file of more than two million lines.
  std::optional<std::vector<std::string>> ReadLines(std::string_view path, Encoding encoding);

  // The first line, read without the rest of the file. std::nullopt when the file can't be read; empty for an
  // empty file.
  std::optional<std::string> ReadFirstLine(std::string_view path, Encoding encoding);

  // Makes or replaces the file. UTF-16 gets its mark, also where `text` is empty.
  bool Write(std::string_view path, std::string_view text, Encoding encoding);

  // Makes the file when it is missing, as Write does.
  bool CreateMissing(std::string_view path, Encoding encoding);

  bool Append(std::string_view path, std::string_view text, Encoding encoding, IfMissing if_missing);

 private:
  std::string Encode(std::string_view text, Encoding encoding);
  std::string Decode(std::string_view bytes, Encoding encoding);

  Files& files_;
  CodePage& code_page_;
};

// Cuts the first line off a text that isn't empty, and returns it without its end.
std::string_view TakeLine(std::string_view& text);

// The lines of a text, without their ends.
std::vector<std::string> LinesOf(std::string_view text);

}  // namespace ondura
