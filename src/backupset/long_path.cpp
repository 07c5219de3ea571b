#include "backupset/long_path.h"

#include <algorithm>

#include "text/text.h"

namespace ondura {

namespace {

// "C:\" or "\\server\share\"; the whole of a shorter path.
std::size_t RootLength(std::string_view path) {
  std::size_t length = 0;
  for (int backslashes = path.starts_with("\\\\") ? 4 : 1; backslashes > 0; --backslashes) {
    const auto at = path.find('\\', length);
    if (at == std::string_view::npos) return path.size();
    length = at + 1;
  }
  return length;
}

std::string_view LastPart(std::string_view path) { return path.substr(path.rfind('\\') + 1); }

// The entry of `folder` whose short name is `short_name`; that name itself if there is none. A wildcard
// would meet short names as well as long ones, so each entry is asked for its own.
std::string FindLongName(const Machine& machine, const std::string& folder, std::string_view short_name,
                         bool may_be_file) {
  std::string found{short_name};
  machine.folders.List(folder, [&](const FolderEntry& entry) {
    if (!entry.is_folder && !may_be_file) return Visit::kContinue;
    const std::string short_path = machine.drives.ShortPath(folder + std::string{entry.name});
    if (!EqualsIgnoringCase(LastPart(short_path), short_name)) return Visit::kContinue;
    found = entry.name;
    return Visit::kStop;
  });
  return found;
}

std::string Rebuild(const Machine& machine, std::string_view path) {
  const std::size_t root = RootLength(path);
  // The parts before stay in their short form for the look-ups: the long ones may be too long for them.
  std::string folder{path.substr(0, root)};
  std::string rebuilt = folder;
  std::string_view rest = path.substr(root);
  while (!rest.empty()) {
    const std::string_view part = rest.substr(0, rest.find('\\'));
    const bool has_more = part.size() < rest.size();
    rest.remove_prefix(std::min(rest.size(), part.size() + 1));
    const bool is_short = part.find('~') != std::string_view::npos;
    rebuilt += is_short ? FindLongName(machine, folder, part, rest.empty()) : std::string{part};
    folder += part;
    if (!has_more) break;
    rebuilt += '\\';
    folder += '\\';
  }
  return rebuilt;
}

}  // namespace

std::string GetLongPath(const Machine& machine, std::string_view sPath) {
  std::string known = machine.drives.LongPath(sPath);
  if (!known.empty()) return known;
  const bool exists = machine.files.Exists(sPath) || machine.folders.Exists(sPath);
  const bool has_short_parts = sPath.find('~') != std::string_view::npos;
  return exists && has_short_parts ? Rebuild(machine, sPath) : std::string{sPath};
}

}  // namespace ondura
