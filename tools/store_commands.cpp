// What is in the store of a user: snapshots, their files, and the way back.

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <memory>

#include "EngineDoor.h"
#include "Failure.h"
#include "commands.h"
#include "engines/common/door.h"
#include "engines/restic/StoreSettings.h"
#include "text/text.h"

namespace ondura {

namespace {

using Json = nlohmann::json;

struct StoreRequest {
  std::string user;
  std::vector<std::string> paths;
  std::string at;
  std::string to;
  std::string subset;
  bool recursive = false;
  bool force = false;
  bool as_json = false;
};

// "2026-11-23 22:02:56" for "2026-11-23T22:02:56".
std::string TimeText(const Json& answer, const char* name) {
  std::string text = answer.value(name, "");
  std::ranges::replace(text, 'T', ' ');
  return text;
}

// Not the system's own text for sizes, which shows exactly one kilobyte as 0.
std::string SizeText(std::uint64_t bytes) {
  constexpr std::array<const char*, 4> kUnits{" bytes", " KB", " MB", " GB"};
  std::size_t unit = 0;
  auto size = static_cast<double>(bytes);
  for (; size >= 1024 && unit + 1 < kUnits.size(); ++unit) size /= 1024;
  std::ostringstream text;
  text << std::fixed << std::setprecision(unit == 0 ? 0 : 1) << size << kUnits.at(unit);
  return text.str();
}

// "1 file", "2 files".
std::string CountText(int count, const std::string& what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

// A command that shows answers, or gives them as one JSON array. Returns how many there were.
int ShowAll(const Globals& globals, const StoreRequest& request, const EngineDoor::Question& question,
            const EngineDoor::Take& show) {
  OpenedMachine opened(globals);
  opened.Serve(request.user);
  Json all = Json::array();
  int count = 0;
  EngineDoor(opened).Ask(question, [&](const Json& answer) {
    ++count;
    if (!request.as_json) return show(answer);
    Json row = answer;
    row.erase("type");
    all.push_back(std::move(row));
  });
  if (request.as_json) std::cout << all.dump(2) << "\n";
  return count;
}

void ShowSnapshots(const Globals& globals, const StoreRequest& request) {
  const int count =
      ShowAll(globals, request, {.verb = engines::door_verbs::kSnapshots}, [](const Json& answer) {
        std::cout << TimeText(answer, "time") << "  " << answer.value("id", "") << "  " << std::left
                  << std::setw(12) << answer.value("kind", "") << "  "
                  << Join(answer.value("paths", std::vector<std::string>{}), "; ") << "\n";
      });
  if (count == 0 && !request.as_json) std::cout << request.user << " has no snapshot on this machine yet.\n";
}

std::vector<std::string> AtWords(const StoreRequest& request) {
  return request.at.empty() ? std::vector<std::string>{} : std::vector<std::string>{"--at", request.at};
}

void ShowFiles(const Globals& globals, const StoreRequest& request) {
  std::vector<std::string> words = AtWords(request);
  if (!request.paths.empty()) words.push_back(request.paths.front());
  if (request.recursive) words.emplace_back("--recursive=");
  ShowAll(globals, request, {.verb = engines::door_verbs::kFiles, .words = words}, [](const Json& answer) {
    const bool is_folder = answer.value("kind", "") == "folder";
    const std::string path = answer.value("path", "");
    std::cout << TimeText(answer, "modified") << "  " << std::right << std::setw(14)
              << (is_folder ? "" : std::to_string(answer.value("bytes", std::uint64_t{0}))) << "  "
              << (is_folder ? WithBackslash(path) : path) << "\n";
  });
}

// Overwrites itself on a terminal; elsewhere nobody watches.
void ShowProgress(const Json& answer) {
  if (isatty(STDERR_FILENO) == 0) return;
  const auto figure = [&](const char* group, const char* name) {
    return answer.value(group, Json::object()).value(name, std::uint64_t{0});
  };
  std::cerr << "\r" << figure("done", "files") << " of " << figure("total", "files") << " files, "
            << SizeText(figure("done", "bytes")) << " of " << SizeText(figure("total", "bytes")) << "   "
            << std::flush;
}

void ShowRestored(const StoreRequest& request, const std::string& folder, const Json& answer) {
  if (isatty(STDERR_FILENO) != 0) std::cerr << "\r";
  if (request.as_json) {
    Json row = answer;
    row.erase("type");
    row["to"] = folder;
    std::cout << row.dump(2) << "\n";
    return;
  }
  std::cout << "Restored " << CountText(answer.value("files", 0), "file") << " in "
            << CountText(answer.value("folders", 0), "folder") << ", "
            << SizeText(answer.value("bytes", std::uint64_t{0})) << ", as they were at "
            << TimeText(answer, "time") << ", to " << folder << "\n";
}

void RestoreFiles(const Globals& globals, const StoreRequest& request) {
  OpenedMachine opened(globals);
  opened.Serve(request.user);
  const std::string folder = engines::IsMachinePath(request.to)
                                 ? opened.machine().processes.SystemPath(request.to)
                                 : std::filesystem::absolute(request.to).lexically_normal().string();
  std::vector<std::string> words = AtWords(request);
  words.insert(words.end(), {"--to", folder});
  if (request.force) words.emplace_back("--force=");
  words.insert(words.end(), request.paths.begin(), request.paths.end());
  EngineDoor(opened).Ask({.verb = engines::door_verbs::kRestore, .words = words}, [&](const Json& answer) {
    const std::string type = answer.value("type", "");
    if (type == "progress") ShowProgress(answer);
    if (type == "restored") ShowRestored(request, folder, answer);
  });
}

void Verify(const Globals& globals, const StoreRequest& request) {
  if (!request.as_json && isatty(STDERR_FILENO) != 0)
    std::cerr << "Reading the store; this may take long ...\n";
  std::vector<std::string> words;
  if (!request.subset.empty()) words = {"--subset", request.subset};
  ShowAll(globals, request, {.verb = engines::door_verbs::kVerify, .words = words}, [&](const Json& answer) {
    std::cout << "The store of " << request.user << " is sound; " << answer.value("subset", "")
              << " of its data was read.\n";
  });
}

CLI::App& AddCommand(CLI::App& app, const char* name, const char* text, StoreRequest& request) {
  auto& command = *app.add_subcommand(name, text);
  command.add_option("USER", request.user, "A user of the machine")->required();
  command.add_flag("--json", request.as_json, "As JSON");
  return command;
}

void AddAt(CLI::App& command, StoreRequest& request) {
  command
      .add_option("--at", request.at,
                  "The newest snapshot that is not later, or a snapshot's id; the newest of all unless given")
      ->type_name("WHEN");
}

}  // namespace

void AddStoreCommands(CLI::App& app, const Globals& globals) {
  auto request = std::make_shared<StoreRequest>();
  auto& snapshots = AddCommand(app, "snapshots", "Lists what was backed up when", *request);
  snapshots.footer("Example: ondura snapshots ann");
  snapshots.callback([&globals, request] { ShowSnapshots(globals, *request); });

  auto& files = AddCommand(app, "files", "Lists the files of a snapshot", *request);
  files.add_option("PATH", request->paths, "A folder as the machine has it; all drives unless given")
      ->expected(0, 1);
  files.add_flag("--recursive", request->recursive, "With all that is in folders below");
  AddAt(files, *request);
  files.footer("Example: ondura files ann 'D:\\Documents' --at '2026-11-23 22:05'");
  files.callback([&globals, request] { ShowFiles(globals, *request); });

  auto& restore = AddCommand(app, "restore", "Brings files and folders back into a folder", *request);
  restore.add_option("PATH", request->paths, "Files and folders as the machine has them")->required();
  restore
      .add_option("--to", request->to, "Where to: D:\\x becomes DIR/D/x; the folder is made if it is missing")
      ->type_name("DIR")
      ->required();
  restore.add_flag("--force", request->force, "Overwrite files that are there");
  AddAt(restore, *request);
  restore.footer("Example: ondura restore ann 'D:\\Documents' --to /tmp/back --at 2026-11-20");
  restore.callback([&globals, request] { RestoreFiles(globals, *request); });

  auto& verify = AddCommand(app, "verify", "Reads the store's data and says whether it is sound", *request);
  verify.add_option("--subset", request->subset, "Only so much of it, such as 10%")->type_name("N%");
  verify.footer("Example: ondura verify ann --subset 10%");
  verify.callback([&globals, request] { Verify(globals, *request); });
}

}  // namespace ondura
