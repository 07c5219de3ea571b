#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>

#include "HostNotes.h"
#include "commands.h"
#include "profile/Transfer.h"
#include "reporting/Progress.h"
#include "text/text.h"
#include "user_status.h"

namespace ondura {

namespace {

// What an engine says whose store has no limit: nobody has a store of a pebibyte.
constexpr double kNoQuota = 1125899906842624.0;

struct StatusRequest {
  std::string user;
  bool as_json = false;
};

nlohmann::ordered_json AsJson(const UserStatus& status) {
  nlohmann::ordered_json json = {{"user", status.user}, {"state", status.state}, {"words", status.words}};
  json["last_result"] = nullptr;
  if (status.last_result) {
    json["last_result"] = {{"code", status.last_result->code}, {"words", status.last_result->words}};
  }
  json["last_end"] = status.last_end;
  json["sentence"] = status.sentence;
  json["host"] = status.host;
  json["failures_in_a_row"] = status.failures_in_a_row;
  json["disabled"] = status.is_disabled;
  json["next"] = nullptr;
  if (status.next)
    json["next"] = {{"time", status.next->time}, {"kind", status.next->kind}, {"far", status.next->is_far}};
  json["quota"] = nullptr;
  if (status.quota) json["quota"] = {{"used", status.quota->used_bytes}, {"max", status.quota->max_bytes}};
  json["progress"] = nlohmann::ordered_json::object();
  for (const auto& [figure, value] : status.progress) json["progress"][figure] = value;
  return json;
}

std::string QuotaText(const OpenedMachine& opened, const Quota& quota) {
  Transfer transfer(opened.machine(), opened.installation());
  Progress progress(opened.machine(), opened.installation(), transfer);
  const auto size = [&](const std::string& bytes) {
    const auto number = ParseNumber(bytes);
    return number ? progress.GetProperSizeValue(*number) : "?";
  };
  if (quota.max_bytes == "1") return size(quota.used_bytes) + " used, a gigabyte is left";
  if (ParseNumber(quota.max_bytes).value_or(0) >= kNoQuota) return size(quota.used_bytes) + " used, no limit";
  return size(quota.used_bytes) + " of " + size(quota.max_bytes) + " used";
}

void PrintLine(const std::string& name, const std::string& text) {
  if (!text.empty()) std::cout << "  " << name << std::string(10 - name.size(), ' ') << text << "\n";
}

std::string LastJobText(const UserStatus& status) {
  if (!status.last_result) return status.last_end.empty() ? "" : "ended " + status.last_end;
  const std::string result =
      status.last_result->words + " (" + std::to_string(status.last_result->code) + ")";
  return status.last_end.empty() ? result : result + ", ended " + status.last_end;
}

std::string NextText(const UserStatus& status) {
  if (!status.next) return "no schedule";
  std::string text = status.next->time + ", " + status.next->kind;
  if (status.is_disabled) text += " (schedules are switched off)";
  return text;
}

void Print(const OpenedMachine& opened, const UserStatus& status) {
  std::cout << status.user << "\n";
  PrintLine("state", status.words);
  for (const auto& [figure, value] : status.progress)
    PrintLine("", std::string{figure}.append(": ").append(value));
  // While a job runs the profile holds the results of its own steps.
  if (status.state != "running") PrintLine("last job", LastJobText(status));
  PrintLine("says", status.sentence);
  PrintLine("host", status.host);
  if (status.failures_in_a_row > 0)
    PrintLine("failures", std::to_string(status.failures_in_a_row) + " in a row");
  PrintLine("next", NextText(status));
  if (status.next && status.next->is_far) {
    PrintLine("warning", "the next run is more than 32 days ahead; look at the clock and at the schedule");
  }
  if (status.quota) PrintLine("quota", QuotaText(opened, *status.quota));
}

void ShowStatus(const Globals& globals, const StatusRequest& request) {
  OpenedMachine opened(globals);
  const auto users = request.user.empty() ? opened.Users() : std::vector<std::string>{request.user};
  const std::string in_charge = opened.keys().Read(profile_keys::kStandard) == "1" ? "twin" : "service";
  const std::string host_waits = HostNotes(opened.machine(), opened.installation()).Waits();
  if (!request.as_json && !host_waits.empty()) std::cout << "host: " << host_waits << "\n";
  if (!request.user.empty()) opened.Serve(request.user);
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  for (const auto& user : users) {
    if (request.user.empty()) opened.ServeNew(user);
    const UserStatus status = ReadUserStatus(opened);
    if (request.as_json) {
      list.push_back(AsJson(status));
    } else {
      Print(opened, status);
    }
  }
  if (request.as_json) {
    const nlohmann::ordered_json all = {
        {"in_charge", in_charge}, {"host_waits", host_waits}, {"users", list}};
    std::cout << all.dump(2) << "\n";
  } else if (users.empty()) {
    std::cout << "There are no users; add one with: ondura user add NAME\n";
  }
}

}  // namespace

void AddStatusCommand(CLI::App& app, const Globals& globals) {
  auto& status =
      *app.add_subcommand("status", "Says what each user's backup is doing, how it ended and what is next");
  auto request = std::make_shared<StatusRequest>();
  status.add_option("USER", request->user, "Only this user");
  status.add_flag("--json", request->as_json, "As a JSON object");
  status.footer("Example: ondura status ann");
  status.callback([&globals, request] { ShowStatus(globals, *request); });
}

}  // namespace ondura
