#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <vector>

#include "Failure.h"
#include "commands.h"
#include "engines/check/engine_check.h"

namespace ondura {

namespace {

namespace fs = std::filesystem;

struct CheckRequest {
  std::string engine;
  std::string store;
  std::vector<std::string> only;
  bool large = false;
  bool list = false;
  bool keep = false;
  bool as_json = false;
};

std::string_view WordOf(check::CheckOutcome outcome) {
  switch (outcome) {
    case check::CheckOutcome::kPassed:
      return "ok";
    case check::CheckOutcome::kFailed:
      return "FAILED";
    case check::CheckOutcome::kNotOffered:
      return "not offered";
  }
  return "?";
}

bool IsWanted(const CheckRequest& request, const check::CheckCase& check) {
  if (request.only.empty()) return request.large || !check.is_large;
  return std::ranges::any_of(request.only,
                             [&](const std::string& name) { return check.name.starts_with(name); });
}

std::string MakeFolder() {
  std::string folder = (fs::temp_directory_path() / "ondura-engine-check-XXXXXX").string();
  if (mkdtemp(folder.data()) == nullptr) {
    throw Failure(Exit::kFailed, "can't make a folder in " + fs::temp_directory_path().string());
  }
  return folder;
}

// The number of failures.
int RunAll(const CheckRequest& request, const std::string& folder, nlohmann::json& rows) {
  const check::CheckPlan plan{fs::absolute(request.engine).string(), request.store, folder};
  int failures = 0;
  for (const check::CheckCase& check : check::AllCases()) {
    if (!IsWanted(request, check)) continue;
    const check::CheckReport report = check::RunCase(check, plan);
    if (report.outcome == check::CheckOutcome::kFailed) ++failures;
    rows.push_back({{"name", check.name},
                    {"what", check.what},
                    {"outcome", WordOf(report.outcome)},
                    {"reason", report.reason}});
    if (request.as_json) continue;
    std::cout << WordOf(report.outcome) << "  " << check.name << "  " << check.what
              << (report.reason.empty() ? "" : ": " + report.reason) << std::endl;
  }
  return failures;
}

void CheckEngine(const CheckRequest& request) {
  if (request.list) {
    for (const check::CheckCase& check : check::AllCases())
      std::cout << check.name << "  " << check.what << "\n";
    return;
  }
  if (request.engine.empty()) throw Failure(Exit::kUsage, "which engine? Give its program");
  const std::string folder = MakeFolder();
  nlohmann::json rows = nlohmann::json::array();
  const int failures = RunAll(request, folder, rows);
  if (request.as_json) std::cout << rows.dump(2) << "\n";
  std::error_code error;
  if (!request.keep) fs::remove_all(folder, error);
  if (rows.empty()) throw Failure(Exit::kUsage, "no check has such a name; --list shows them");
  if (failures > 0) {
    throw Failure(Exit::kFailed,
                  std::to_string(failures) + " of " + std::to_string(rows.size()) + " checks failed" +
                      (request.keep ? "; the machines are in " + folder : "; --keep leaves the machines"));
  }
}

}  // namespace

void AddEngineCheckCommand(CLI::App& app, const Globals& /*globals*/) {
  auto& command =
      *app.add_subcommand("engine-check", "Says whether an engine does all that the component expects");
  auto request = std::make_shared<CheckRequest>();
  command.add_option("ENGINE", request->engine, "The engine's program")->check(CLI::ExistingFile);
  command.add_option("--store", request->store, "A location for its stores; its own default unless given")
      ->type_name("LOCATION");
  command.add_option("--only", request->only, "The checks whose names begin so; repeatable")
      ->type_name("NAME")
      ->allow_extra_args(false);
  command.add_flag("--large", request->large, "Also those that take minutes");
  command.add_flag("--list", request->list, "List the checks");
  command.add_flag("--keep", request->keep, "Leave the machines that were made");
  command.add_flag("--json", request->as_json, "As a JSON array");
  command.footer("Example: ondura engine-check build/release/engines/restic-engine");
  command.callback([request] { CheckEngine(*request); });
}

}  // namespace ondura
