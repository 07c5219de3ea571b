#include <algorithm>
#include <iostream>
#include <memory>
#include <tuple>

#include "Failure.h"
#include "OpenedMachine.h"
#include "commands.h"
#include "profile/profile_paths.h"
#include "util/TextFiles.h"
#include "util/date_text.h"

namespace ondura {

namespace {

struct LogRequest {
  std::string user;
  std::string name;
  bool list = false;
};

struct LogFile {
  std::string name;
  LocalTime modified;
};

// Oldest first.
std::vector<LogFile> FindLogs(const OpenedMachine& opened) {
  std::vector<LogFile> logs;
  opened.machine().folders.List(opened.installation().UserFile(kSessionFolder),
                                [&](const FolderEntry& entry) {
                                  if (!entry.is_folder && entry.name.ends_with(".txt"))
                                    logs.push_back({std::string{entry.name}, entry.modified});
                                  return Visit::kContinue;
                                });
  std::ranges::sort(logs, {}, [](const LogFile& log) { return std::tie(log.modified, log.name); });
  return logs;
}

void ShowLog(const Globals& globals, const LogRequest& request) {
  OpenedMachine opened(globals);
  opened.Serve(request.user);
  const auto logs = FindLogs(opened);
  if (logs.empty()) {
    throw Failure(Exit::kFailed,
                  opened.installation().CurrentUser + " has no session log yet; a job writes one");
  }
  if (request.list) {
    for (const auto& log : logs)
      std::cout << FormatDate("yyyy-mm-dd HH:mm:ss", log.modified) << "  " << log.name << "\n";
    return;
  }
  const std::string name = request.name.empty() ? logs.back().name : request.name;
  const bool is_known = std::ranges::find(logs, name, &LogFile::name) != logs.end();
  const auto lines =
      TextFiles(opened.machine().files, opened.machine().code_page)
          .ReadLines(opened.installation().UserFile(kSessionFolder) + "\\" + name, Encoding::kUtf16);
  if (!is_known || !lines) {
    throw Failure(Exit::kFailed, "there is no session log '" + name + "'; 'ondura log " + request.user +
                                     " --all' lists them");
  }
  std::cout << name << "\n";
  for (const auto& line : *lines) std::cout << line << "\n";
}

}  // namespace

void AddLogCommand(CLI::App& app, const Globals& globals) {
  auto& log = *app.add_subcommand("log", "Shows a user's newest session log");
  auto request = std::make_shared<LogRequest>();
  log.add_option("USER", request->user, "A user of the machine")->required();
  log.add_option("--name", request->name, "The log of that name instead")->type_name("FILE");
  log.add_flag("--all", request->list, "List all logs, the newest last");
  log.footer("Example: ondura log ann");
  log.callback([&globals, request] { ShowLog(globals, *request); });
}

}  // namespace ondura
