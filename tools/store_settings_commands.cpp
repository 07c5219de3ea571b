// Where backups go and how long they are kept: Engine.ini of the machine.

#include <array>
#include <iostream>
#include <memory>
#include <optional>

#include "EngineDoor.h"
#include "EngineSettings.h"
#include "Failure.h"
#include "commands.h"
#include "engines/common/door.h"
#include "engines/restic/StoreSettings.h"
#include "secret_input.h"
#include "text/text.h"

namespace ondura {

namespace {

using Json = nlohmann::json;

namespace names = engines::engine_settings;

struct KeepRow {
  std::string_view key;
  const char* option;
  const char* text;
};
constexpr std::array kKeepRows{
    KeepRow{names::kLast, "--last", "The newest snapshots"},
    KeepRow{names::kDaily, "--daily", "One of each day that has any"},
    KeepRow{names::kWeekly, "--weekly", "One of each week"},
    KeepRow{names::kMonthly, "--monthly", "One of each month"},
    KeepRow{names::kYearly, "--yearly", "One of each year"},
};

struct KeepRequest {
  std::string user;
  std::array<std::optional<int>, kKeepRows.size()> counts;
  bool all = false;
  bool as_json = false;
};

struct StorePlan {
  std::string location;
  std::string user;
  std::string authority;
  std::string ssh_config;
  std::optional<std::uint64_t> max_bytes;
  std::string accept;
  std::string change_password;
  bool password_from_input = false;
  bool as_json = false;
};

void ShowRetention(const EngineSettings& own, const EngineSettings& common, bool as_json) {
  Json json = Json::object();
  std::string words;
  for (const KeepRow& row : kKeepRows) {
    std::string value = own.Read(names::kRetention, row.key);
    if (value.empty()) value = common.Read(names::kRetention, row.key);
    const auto count = ParseInteger(value).value_or(0);
    json[ToLower(row.key)] = count;
    if (count > 0) words += (words.empty() ? "" : ", ") + ToLower(row.key) + " " + std::to_string(count);
  }
  if (as_json) {
    std::cout << json.dump(2) << "\n";
  } else {
    std::cout << (words.empty() ? "Every snapshot is kept." : "Kept: " + words + ".") << "\n";
  }
}

void Keep(const Globals& globals, const KeepRequest& request) {
  OpenedMachine opened(globals);
  opened.Serve(request.user);
  const auto lock = opened.LockForChange();
  const std::string& folder = opened.installation().ExeLocation;
  const EngineSettings own(opened.machine(), folder, opened.installation().CurrentUser);
  const EngineSettings common(opened.machine(), folder, {});
  bool changes = request.all;
  for (const auto& count : request.counts) changes = changes || count.has_value();
  for (std::size_t at = 0; changes && at < kKeepRows.size(); ++at) {
    own.Write(names::kRetention, kKeepRows[at].key, std::to_string(request.counts[at].value_or(0)));
  }
  ShowRetention(own, common, request.as_json);
}

void WriteStore(const OpenedMachine& opened, const StorePlan& plan) {
  const auto lock = opened.LockForChange();
  const EngineSettings settings(opened.machine(), opened.installation().ExeLocation, plan.user);
  if (!plan.location.empty()) settings.Write(names::kStore, names::kRepository, StoreLocation(plan.location));
  if (!plan.authority.empty()) settings.Write(names::kStore, names::kAuthority, plan.authority);
  if (!plan.ssh_config.empty()) settings.Write(names::kStore, names::kSshConfig, plan.ssh_config);
  if (plan.max_bytes) settings.Write(names::kStore, names::kMaxBytes, std::to_string(*plan.max_bytes));
}

// False if the store can't be entered. It is made where there is none yet.
bool ShowStore(OpenedMachine& opened, const std::string& user, Json& all, bool as_json) {
  opened.Serve(user);
  Json row{{"user", user}};
  try {
    EngineDoor(opened).Ask({.verb = engines::door_verbs::kStore},
                           [&](const Json& answer) { row.update(answer); });
  } catch (const Failure& failure) {
    row["error"] = failure.what();
  }
  row.erase("type");
  all.push_back(row);
  if (as_json) return !row.contains("error");
  std::cout << user << "\n  location  " << row.value("location", "?") << "\n";
  if (row.contains("error")) {
    std::cout << "  problem   " << row.value("error", "") << "\n";
    return false;
  }
  std::cout << "  used      " << row.value("used_bytes", std::uint64_t{0}) << " bytes";
  if (const auto most = row.value("max_bytes", std::uint64_t{0}); most > 0) std::cout << " of " << most;
  std::cout << "\n  id        " << row.value("id", "").substr(0, 10) << "\n";
  if (row.contains("last_check")) {
    std::cout << "  checked   " << row.value("last_check", "") << ": " << row.value("last_check_outcome", "")
              << "\n";
  }
  return true;
}

void Accept(OpenedMachine& opened, const std::string& user) {
  opened.Serve(user);
  EngineDoor(opened).Ask({.verb = engines::door_verbs::kAccept}, [&](const Json& answer) {
    std::cout << user << " backs up into the repository " << answer.value("id", "").substr(0, 10)
              << " from now on.\n";
  });
}

void ChangePassword(OpenedMachine& opened, const StorePlan& plan) {
  opened.Serve(plan.change_password);
  const std::string old = plan.password_from_input
                              ? ReadInputLine("the old password")
                              : AskSecret("Old encryption password", "use --password-stdin");
  EngineDoor(opened).Ask(
      {.verb = engines::door_verbs::kPassword, .words = {}, .input = old + "\n"}, [&](const Json&) {
        std::cout << "The store of " << plan.change_password << " has the profile's password now.\n";
      });
}

void Store(const Globals& globals, const StorePlan& plan) {
  OpenedMachine opened(globals);
  if (!plan.user.empty()) opened.Serve(plan.user);
  if (!plan.accept.empty()) return Accept(opened, plan.accept);
  if (!plan.change_password.empty()) return ChangePassword(opened, plan);
  WriteStore(opened, plan);
  Json all = Json::array();
  bool is_good = true;
  const auto users = plan.user.empty() ? opened.Users() : std::vector<std::string>{plan.user};
  for (const std::string& user : users) is_good = ShowStore(opened, user, all, plan.as_json) && is_good;
  if (plan.as_json) std::cout << all.dump(2) << "\n";
  if (!is_good) throw Failure(Exit::kFailed, "not every store can be used; mend what is named above");
}

}  // namespace

void AddStoreSettingsCommands(CLI::App& app, const Globals& globals) {
  auto& keep =
      *app.add_subcommand("keep", "Says how long a user's snapshots are kept; without options shows it");
  auto request = std::make_shared<KeepRequest>();
  keep.add_option("USER", request->user, "A user of the machine")->required();
  for (std::size_t at = 0; at < kKeepRows.size(); ++at) {
    keep.add_option(kKeepRows[at].option, request->counts[at], kKeepRows[at].text)
        ->check(CLI::Range(0, 100000));
  }
  keep.add_flag("--all", request->all, "Every snapshot, for ever");
  keep.add_flag("--json", request->as_json, "As JSON");
  keep.footer("Example: ondura keep ann --daily 7 --weekly 5 --monthly 12");
  keep.callback([&globals, request] { Keep(globals, *request); });

  auto& store =
      *app.add_subcommand("store", "Says where backups go, and shows whether the stores can be used");
  auto plan = std::make_shared<StorePlan>();
  store.add_option("LOCATION", plan->location,
                   "A folder of the host, or a store of restic: sftp:, rest:, s3:, b2:, azure:, gs:, "
                   "rclone:. Each account "
                   "gets a folder in it, at {account} or at the end");
  store.add_option("--user", plan->user, "For this user alone")->type_name("USER");
  store
      .add_option("--authority", plan->authority,
                  "Certificates that the server's own has to lead to, as the machine "
                  "names the file")
      ->type_name("FILE");
  store.add_option("--ssh-config", plan->ssh_config, "Configuration for ssh, a file of the host")
      ->type_name("FILE");
  store.add_option("--max-bytes", plan->max_bytes, "Most bytes that each store may take; 0 for no limit");
  store.add_option("--accept", plan->accept, "Let this user go on in another repository that is there now")
      ->type_name("USER");
  store
      .add_option("--change-password", plan->change_password,
                  "Give this user's store the encryption password of the profile; asks for the old one")
      ->type_name("USER");
  store.add_flag("--password-stdin", plan->password_from_input, "Read the old password from standard input");
  store.add_flag("--json", plan->as_json, "As JSON");
  store.footer("Example: ondura store sftp:backup@host:/srv/backup");
  store.callback([&globals, plan] { Store(globals, *plan); });
}

}  // namespace ondura
