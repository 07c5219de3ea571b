#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>

#include "Failure.h"
#include "OpenedMachine.h"
#include "SelectionList.h"
#include "commands.h"
#include "profile/user_defaults.h"
#include "text/text.h"

namespace ondura {

namespace {

constexpr std::string_view kSelected = kSelectionListFile;
constexpr std::string_view kExcludedFolders = "atbkupExcludelist.txt";
constexpr std::string_view kExcludedFiles = "atbkupExcludeFilePath.txt";
constexpr std::string_view kEveryDrive = "My Computer";

struct PathsRequest {
  std::string user;
  std::vector<std::string> paths;
  bool list = false;
  bool remove = false;
  bool as_json = false;
};

// Files and folders go to lists of their own, or both to the same.
struct Lists {
  SelectionList folders;
  SelectionList files;
  bool are_one = false;

  SelectionList& For(bool is_folder) { return is_folder || are_one ? folders : files; }
};

Lists SelectedLists(const OpenedMachine& opened) {
  const SelectionList list(opened.machine(), opened.installation().UserFile(kSelected));
  return {list, list, true};
}

Lists ExcludedLists(const OpenedMachine& opened) {
  return {SelectionList(opened.machine(), opened.installation().UserFile(kExcludedFolders)),
          SelectionList(opened.machine(), opened.installation().UserFile(kExcludedFiles)), false};
}

using OpenLists = Lists (*)(const OpenedMachine&);

struct PathOnMachine {
  std::string text;
  bool is_folder = false;
};

bool IsPathOfMachine(std::string_view path) {
  const auto is_letter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
  return path.starts_with("\\\\") || (path.size() > 3 && is_letter(path[0]) && path.substr(1, 2) == ":\\");
}

void RefusePattern(const std::string& path) {
  if (path.find_first_of("*?") == std::string::npos) return;
  throw Failure(Exit::kUsage,
                "'" + path + "' is a pattern, and these lists hold none; name a file or a folder");
}

// What is to be left out may come later, such as a cache that its program makes.
PathOnMachine NotThereYet(const std::string& path) {
  const std::string_view name = FileNameOf(path);
  const bool is_folder = name.empty() || name.find('.') == std::string_view::npos;
  std::cerr << "ondura: there is nothing at " << path << " yet; it is left out as a "
            << (is_folder ? "folder" : "file, or end it in a backslash if it is to be a folder") << "\n";
  return {is_folder ? WithBackslash(path) : path, is_folder};
}

// The path in its own letter case; a folder ends in a backslash, as the size calculation wants it.
PathOnMachine FindPath(const Machine& machine, const std::string& path, bool may_be_missing) {
  RefusePattern(path);
  const std::string plain = ReplaceAll(path, "/", "\\");
  const bool is_folder = machine.folders.Exists(plain);
  if (!is_folder && !machine.files.Exists(plain)) {
    if (may_be_missing && IsPathOfMachine(plain)) return NotThereYet(plain);
    throw Failure(Exit::kFailed, "there is nothing at '" + path +
                                     "'; give a path as the machine sees it, such as D:\\Documents");
  }
  const std::string found = machine.drives.LongPath(plain);
  const std::string text = found.empty() ? plain : found;
  return {is_folder ? WithBackslash(text) : text, is_folder};
}

// Whoever reads the list trims its lines, and a backslash with a blank before it loses the blank.
void RefuseTrailingBlanks(const PathOnMachine& path) {
  if (path.text.find(" \\") == std::string::npos && !path.text.ends_with(' ')) return;
  throw Failure(Exit::kFailed, "'" + path.text +
                                   "' has a name that ends in a blank, which no backup finds; "
                                   "rename it, or select the folder above");
}

// Saved once all the same, but whoever takes the outer one away keeps the inner one without knowing.
void RemarkOverlaps(const std::vector<std::string>& selected, const std::string& added) {
  for (const std::string& other : selected) {
    if (EqualsIgnoringCase(other, added)) continue;
    const bool is_inside = other == kEveryDrive || StartsWithIgnoringCase(added, WithBackslash(other));
    const bool is_outside = added == kEveryDrive || StartsWithIgnoringCase(other, WithBackslash(added));
    if (!is_inside && !is_outside) continue;
    std::cerr << "ondura: " << (is_inside ? added : other) << " lies in " << (is_inside ? other : added)
              << ", which is selected too\n";
  }
}

void AddPaths(const Machine& machine, Lists& lists, const std::vector<std::string>& paths) {
  std::vector<PathOnMachine> found;
  for (const auto& path : paths) {
    const bool is_keyword = lists.are_one && path == kEveryDrive;
    found.push_back(is_keyword ? PathOnMachine{path, false} : FindPath(machine, path, !lists.are_one));
    if (lists.are_one) RefuseTrailingBlanks(found.back());
  }
  for (const auto& path : found) {
    if (!lists.For(path.is_folder).Add(path.text))
      std::cerr << "ondura: " << path.text << " is in the list already\n";
    if (lists.are_one) RemarkOverlaps(lists.folders.Entries(), path.text);
  }
}

void RemovePaths(Lists& lists, const std::vector<std::string>& paths) {
  for (const auto& path : paths) {
    const std::string plain = ReplaceAll(path, "/", "\\");
    const bool removed = lists.For(true).Remove(plain) || lists.For(false).Remove(plain);
    if (!removed) throw Failure(Exit::kFailed, "'" + path + "' is not in the list; --list shows it");
  }
}

void Print(const Lists& lists, bool as_json) {
  auto entries = lists.folders.Entries();
  if (!lists.are_one)
    entries.insert(entries.end(), lists.files.Entries().begin(), lists.files.Entries().end());
  if (as_json) {
    // A name may hold what is no UTF-8.
    std::cout << nlohmann::json(entries).dump(2, ' ', false, nlohmann::json::error_handler_t::replace)
              << "\n";
    return;
  }
  for (const auto& entry : entries) std::cout << entry << "\n";
}

void ChangePaths(const Globals& globals, const PathsRequest& request, OpenLists open) {
  if (request.list != request.paths.empty()) {
    throw Failure(Exit::kUsage, "give paths to add, paths after --remove, or --list alone");
  }
  OpenedMachine opened(globals);
  opened.Serve(request.user);
  const auto lock = request.list ? nullptr : opened.LockForChange();
  Lists lists = open(opened);
  if (request.list) {
    Print(lists, request.as_json);
    return;
  }
  if (request.remove) {
    RemovePaths(lists, request.paths);
  } else {
    AddPaths(opened.machine(), lists, request.paths);
  }
  if (!lists.folders.Save() || (!lists.are_one && !lists.files.Save())) {
    throw Failure(Exit::kFailed, "can't write the list; look at the rights of the user's folder");
  }
}

void AddPathsCommand(CLI::App& command, const Globals& globals, OpenLists open) {
  auto request = std::make_shared<PathsRequest>();
  command.add_option("USER", request->user, "A user of the machine")->required();
  command.add_option("PATH", request->paths, "Files and folders as the machine sees them");
  command.add_flag("--list", request->list, "Show the list");
  command.add_flag("--remove", request->remove, "Take the paths off the list");
  command.add_flag("--json", request->as_json, "With --list: as a JSON array");
  command.callback([&globals, request, open] { ChangePaths(globals, *request, open); });
}

}  // namespace

void AddSelectCommand(CLI::App& app, const Globals& globals) {
  auto& select = *app.add_subcommand("select", "Chooses the files and folders that a user's backups hold");
  select.footer(
      "'My Computer' means every drive.\nExample: ondura select ann 'D:\\Documents' 'D:\\notes.txt'");
  AddPathsCommand(select, globals, SelectedLists);
}

void AddExcludeCommand(CLI::App& app, const Globals& globals) {
  auto& exclude = *app.add_subcommand("exclude", "Leaves files and folders out of a user's backups");
  exclude.footer(
      "A path that is not there yet counts as a folder where it ends in a backslash or has no ending. "
      "Patterns can't "
      "be used.\nExample: ondura exclude ann 'D:\\Documents\\Cache'");
  AddPathsCommand(exclude, globals, ExcludedLists);
}

}  // namespace ondura
