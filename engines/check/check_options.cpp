#include "engines/check/check_options.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "engines/check/engine_check.h"

namespace ondura::check {

namespace {

namespace fs = std::filesystem;

constexpr int kExitFailed = 1;
constexpr int kExitUsage = 2;

std::string_view WordOf(CheckOutcome outcome) {
  switch (outcome) {
    case CheckOutcome::kPassed:
      return "ok";
    case CheckOutcome::kFailed:
      return "FAILED";
    case CheckOutcome::kNotOffered:
      return "not offered";
  }
  return "?";
}

bool IsWanted(const CheckRequest& request, const CheckCase& check) {
  if (request.only.empty()) return request.large || !check.is_large;
  return std::ranges::any_of(request.only,
                             [&](const std::string& name) { return check.name.starts_with(name); });
}

// The number of failures.
int RunAll(const CheckRequest& request, const std::string& folder, nlohmann::json& rows) {
  const CheckPlan plan{fs::absolute(request.engine).string(), request.store, folder};
  int failures = 0;
  for (const CheckCase& check : AllCases()) {
    if (!IsWanted(request, check)) continue;
    const CheckReport report = RunCase(check, plan);
    if (report.outcome == CheckOutcome::kFailed) ++failures;
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

}  // namespace

void AddCheckOptions(CLI::App& command, CheckRequest& request) {
  command.add_option("ENGINE", request.engine, "The engine's program")->check(CLI::ExistingFile);
  command.add_option("--store", request.store, "A location for its stores; its own default unless given")
      ->type_name("LOCATION");
  command.add_option("--only", request.only, "The checks whose names begin so; repeatable")
      ->type_name("NAME")
      ->allow_extra_args(false);
  command.add_flag("--large", request.large, "Also those that take minutes");
  command.add_flag("--list", request.list, "List the checks");
  command.add_flag("--keep", request.keep, "Leave the machines that were made");
  command.add_flag("--json", request.as_json, "As a JSON array");
}

CheckEnd RunChecks(const CheckRequest& request) {
  if (request.list) {
    for (const CheckCase& check : AllCases()) std::cout << check.name << "  " << check.what << "\n";
    return {};
  }
  if (request.engine.empty()) return {kExitUsage, "which engine? Give its program"};
  std::string folder;
  try {
    folder = MakeCheckFolder();
  } catch (const std::runtime_error& failure) {
    return {kExitFailed, failure.what()};
  }
  nlohmann::json rows = nlohmann::json::array();
  const int failures = RunAll(request, folder, rows);
  if (request.as_json) std::cout << rows.dump(2) << "\n";
  if (!request.keep) RemoveCheckFolder(folder);
  if (rows.empty()) return {kExitUsage, "no check has such a name; --list shows them"};
  if (failures == 0) return {};
  return {kExitFailed,
          std::to_string(failures) + " of " + std::to_string(rows.size()) + " checks failed" +
              (request.keep ? "; the machines are in " + folder : "; --keep leaves the machines")};
}

}  // namespace ondura::check
