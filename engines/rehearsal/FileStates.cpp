#include "engines/rehearsal/FileStates.h"

#include <algorithm>
#include <vector>

#include "text/text.h"
#include "util/date_text.h"

namespace ondura::engines {

void FileStates::Put(std::string_view path, const FileState& state) {
  states_[ToLower(path)] = {std::string{path}, state};
}

std::optional<FileState> FileStates::Find(std::string_view path) const {
  const auto found = states_.find(ToLower(path));
  if (found == states_.end()) return std::nullopt;
  return found->second.state;
}

bool FileStates::Load(TextFiles& text_files, std::string_view path) {
  const auto lines = text_files.ReadLines(path, Encoding::kUtf16);
  if (!lines) return false;
  for (const std::string& line : *lines) {
    const auto fields = Split(line, "/");
    if (fields.size() != 3) continue;
    const auto size = ParseInteger(fields[1]);
    const auto modified = ParseFixedDate(fields[2]);
    if (size && *size >= 0 && modified) Put(fields[0], {static_cast<std::uint64_t>(*size), *modified});
  }
  return true;
}

bool FileStates::Save(TextFiles& text_files, std::string_view path) const {
  std::vector<std::string> lines;
  lines.reserve(states_.size());
  for (const auto& [key, named] : states_) {
    lines.push_back(named.path + "/" + std::to_string(named.state.size_bytes) + "/" +
                    FormatDate(kStampPicture, named.state.modified));
  }
  std::ranges::sort(lines);
  std::string text;
  for (const std::string& line : lines) text.append(line).append(kLineEnd);
  return text_files.Write(path, text, Encoding::kUtf16);
}

}  // namespace ondura::engines
