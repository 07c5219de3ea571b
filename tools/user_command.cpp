#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>

#include "Failure.h"
#include "OpenedMachine.h"
#include "ValueWriter.h"
#include "commands.h"
#include "engine/status_word.h"
#include "profile/profile_paths.h"
#include "profile/user_defaults.h"
#include "secret_input.h"
#include "text/text.h"
#include "util/TextFiles.h"

namespace ondura {

namespace {

constexpr std::size_t kLongestName = 64;
constexpr std::string_view kRefusedInNames = ";\\/:*?\"<>|=";

struct UserPlan {
  std::string name;
  std::string account;
  std::string server = "localhost";
  std::string port = "11905";
  bool password_from_input = false;
};

struct Passwords {
  std::string account;
  std::string encryption;  // empty: none
};

Passwords ReadPasswords(bool from_input) {
  if (from_input) {
    Passwords read{.account = ReadInputLine("the password"), .encryption = {}};
    if (std::cin.peek() != EOF) read.encryption = ReadInputLine("the encryption password");
    return read;
  }
  const char* encryption = std::getenv("ONDURA_ENCRYPTION_PASSWORD");
  if (const char* password = std::getenv("ONDURA_PASSWORD")) {
    return {.account = password, .encryption = encryption == nullptr ? "" : encryption};
  }
  const std::string how_else = "use --password-stdin or set ONDURA_PASSWORD";
  return {.account = AskSecret("Account password", how_else),
          .encryption = AskSecret("Encryption password (empty for none)", how_else)};
}

// The name becomes part of a folder's name and of a list joined by ";".
void CheckName(const OpenedMachine& opened, const std::string& name) {
  const auto refuse = [&](const std::string& why) {
    throw Failure(Exit::kUsage, "'" + name + "' can't be a user's name: " + why);
  };
  if (name.empty() || Trim(name) != name) refuse("it is empty or has blanks at its ends");
  if (name.size() > kLongestName) refuse("it is longer than " + std::to_string(kLongestName) + " bytes");
  const bool is_refused = std::ranges::any_of(name, [](char character) {
    return static_cast<unsigned char>(character) < 32 ||
           kRefusedInNames.find(character) != std::string_view::npos;
  });
  if (is_refused || name.ends_with('.')) refuse("leave out ; \\ / : * ? \" < > | = and a dot at the end");
  CodePage& code_page = opened.machine().code_page;
  if (code_page.ToUtf8(code_page.FromUtf8(name)) != name)
    refuse("the machine's code page lacks its characters");
  const auto users = opened.Users();
  if (std::ranges::any_of(users, [&](const auto& user) { return EqualsIgnoringCase(user, name); })) {
    throw Failure(Exit::kFailed,
                  "there is a user '" + name + "' already; change its values with 'ondura set'");
  }
}

void MakeUserFolder(const OpenedMachine& opened, const std::string& name) {
  const std::string folder = opened.installation().FolderOf(name);
  Folders& folders = opened.machine().folders;
  if (!folders.Exists(folder) && !folders.Make(folder)) {
    throw Failure(Exit::kFailed,
                  "can't make the folder '" + folder + "'; look at the rights of the data folder");
  }
}

// The list is one line, every name closed by ";".
void WriteUserList(const OpenedMachine& opened, const std::vector<std::string>& users) {
  std::string line;
  for (const auto& user : users) line += user + ";";
  const Machine& machine = opened.machine();
  if (!TextFiles(machine.files, machine.code_page)
           .Write(opened.installation().DataFile(kUserListFile), line.append(kLineEnd),
                  Encoding::kCodePage)) {
    throw Failure(Exit::kFailed, "can't write the user list; look at the rights of the data folder");
  }
}

// The profile comes first and the list last: the service never meets a user without an account.
void AddUser(const Globals& globals, const UserPlan& plan) {
  OpenedMachine opened(globals);
  CheckName(opened, plan.name);
  const Passwords passwords = ReadPasswords(plan.password_from_input);
  if (passwords.account.empty()) throw Failure(Exit::kUsage, "the account password must not be empty");

  // Nobody waits for a person at the prompt; meanwhile the name may have been taken.
  const auto lock = opened.LockForChange();
  CheckName(opened, plan.name);
  auto users = opened.Users();
  users.push_back(plan.name);
  MakeUserFolder(opened, plan.name);
  opened.ServeNew(plan.name);
  CopyDefaults(opened.machine(), opened.installation(), plan.name);
  ValueWriter writer(opened.keys());
  writer.Write(profile_keys::kUserName, plan.account.empty() ? plan.name : plan.account);
  writer.Write(profile_keys::kPassword, passwords.account);
  writer.Write(profile_keys::kEncPasswordNew, passwords.encryption);
  writer.Write(profile_keys::kServerIp, plan.server);
  writer.Write(profile_keys::kPort, plan.port);
  writer.Write(profile_keys::kStatus, TextOf(StatusWord::kIdle));
  if (users.size() == 1) writer.Write(profile_keys::kDefaultUser, plan.name);
  WriteUserList(opened, users);
  std::cout << "Added " << plan.name << ". Next: ondura select " << plan.name << " PATH\n";
}

void ListUsers(const Globals& globals, bool as_json) {
  const OpenedMachine opened(globals);
  if (as_json) {
    std::cout << nlohmann::json(opened.Users()).dump(2) << "\n";
    return;
  }
  for (const auto& user : opened.Users()) std::cout << user << "\n";
}

}  // namespace

void AddUserCommand(CLI::App& app, const Globals& globals) {
  auto& user = *app.add_subcommand("user", "Adds and lists the users that the service works for");
  user.require_subcommand(1)->fallthrough();
  user.footer("Example: ondura user add ann --password-stdin < password.txt");

  auto& add = *user.add_subcommand("add", "Adds a user with an account on the backup server");
  auto plan = std::make_shared<UserPlan>();
  add.add_option("NAME", plan->name, "The user's name on this machine")->required();
  add.add_option("--account", plan->account, "Account name; the user's name unless given");
  add.add_option("--server", plan->server, "Server address")->capture_default_str();
  add.add_option("--port", plan->port, "Server port")->check(CLI::Range(1, 65535))->capture_default_str();
  add.add_flag("--password-stdin", plan->password_from_input,
               "Read the account password, and on a second line an encryption password, from standard input");
  add.footer(
      "Without --password-stdin the passwords come from ONDURA_PASSWORD and ONDURA_ENCRYPTION_PASSWORD, or "
      "are "
      "asked for.\nExample: printf 'secret\\nprivate\\n' | ondura user add ann --password-stdin");
  add.callback([&globals, plan] { AddUser(globals, *plan); });

  auto& list = *user.add_subcommand("list", "Lists the users in the order in which they are served");
  auto as_json = std::make_shared<bool>(false);
  list.add_flag("--json", *as_json, "As a JSON array");
  list.footer("Example: ondura user list --json");
  list.callback([&globals, as_json] { ListUsers(globals, *as_json); });
}

}  // namespace ondura
