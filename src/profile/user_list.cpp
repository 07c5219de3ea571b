#include "profile/user_list.h"

#include <cstddef>

#include "profile/profile_paths.h"
#include "text/text.h"

namespace ondura {

namespace {

// Room for a thousand of the longest names. A line beyond that is no list of users, and one name for each
// separator of a damaged file would fill the memory.
constexpr std::size_t kLongestLineBytes = 256UL * 1024;

// The last line of a text that isn't empty, without its end.
std::string_view LastLineOf(std::string_view bytes) {
  if (bytes.ends_with('\n')) bytes.remove_suffix(1);
  // Without a line end in the text this is the whole of it.
  bytes.remove_prefix(bytes.rfind('\n') + 1);
  if (bytes.ends_with('\r')) bytes.remove_suffix(1);
  return bytes;
}

// Names that the limit cuts in two are left out, for the first half may be another user's name.
std::string_view WithinLimit(std::string_view line) {
  if (line.size() <= kLongestLineBytes) return line;
  line = line.substr(0, kLongestLineBytes);
  return line.substr(0, line.rfind(';') + 1);
}

}  // namespace

bool ReadUserList(const Machine& machine, std::string_view folder, std::vector<std::string>& list) {
  const std::string path = std::string{folder}.append(kUserListFile);
  if (!machine.files.Exists(path)) return false;
  const auto bytes = machine.files.Read(path);
  if (!bytes || bytes->empty()) return true;
  list = Split(machine.code_page.ToUtf8(WithinLimit(LastLineOf(*bytes))), ";");
  return true;
}

}  // namespace ondura
