#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>

#include "Failure.h"
#include "OpenedMachine.h"
#include "ValueWriter.h"
#include "commands.h"
#include "secret_input.h"
#include "value_forms.h"

namespace ondura {

namespace {

struct KeyRequest {
  std::string user;
  std::string key;
  std::string value;
  bool from_input = false;
  bool as_json = false;
};

const ProfileKey& KnownKey(const std::string& name) {
  const ProfileKey* key = FindProfileKey(name);
  if (key == nullptr) {
    throw Failure(Exit::kUsage, "there is no key '" + name + "'; 'ondura get --help' lists them");
  }
  return *key;
}

void SetValue(const Globals& globals, KeyRequest request, bool has_value) {
  const ProfileKey& key = KnownKey(request.key);
  if (has_value == request.from_input) {
    throw Failure(Exit::kUsage, "give the value of " + request.key + " either after it or with --stdin");
  }
  OpenedMachine opened(globals);
  opened.Serve(request.user);
  if (request.from_input) request.value = ReadInputLine("the value");
  ValueWriter(opened.keys()).Write(key, FittingValue(key, request.value));
}

std::string Shown(const ProfileKey& key, const std::string& value) {
  if (key.show == KeyShow::kOpen) return value;
  return value.empty() ? "(not set)" : "(set)";
}

void GetValue(const Globals& globals, const KeyRequest& request) {
  const ProfileKey& key = KnownKey(request.key);
  OpenedMachine opened(globals);
  opened.Serve(request.user);
  const std::string value = opened.keys().Read(key);
  if (request.as_json) {
    std::cout << nlohmann::json{{std::string{key.name}, Shown(key, value)}}.dump(2) << "\n";
  } else if (!value.empty() || key.show == KeyShow::kSecret) {
    std::cout << Shown(key, value) << "\n";
  }
  if (value.empty()) throw Failure(Exit::kFailed, std::string{key.name} + " is not set");
}

void GetAllValues(const Globals& globals, const KeyRequest& request) {
  OpenedMachine opened(globals);
  opened.Serve(request.user);
  nlohmann::ordered_json values = nlohmann::ordered_json::object();
  for (const ProfileKey& key : AllProfileKeys()) {
    const std::string value = opened.keys().Read(key);
    if (!value.empty()) values[std::string{key.name}] = Shown(key, value);
  }
  if (request.as_json) {
    std::cout << values.dump(2) << "\n";
    return;
  }
  for (const auto& [name, value] : values.items()) {
    std::cout << name << " = " << value.get<std::string>() << "\n";
  }
}

std::string KeyList() {
  std::string text = "Keys (* never shown; keys of the whole machine are the same for every user):\n";
  for (const ProfileKey& key : AllProfileKeys()) {
    const std::string name = std::string{key.name} + (key.show == KeyShow::kSecret ? " *" : "");
    text += "  " + name + std::string(name.size() < 24 ? 24 - name.size() : 1, ' ') +
            std::string{key.meaning} + "\n";
  }
  return text;
}

}  // namespace

void AddSetCommand(CLI::App& app, const Globals& globals) {
  auto& set = *app.add_subcommand("set", "Writes one value of a user's profile or of the machine");
  auto request = std::make_shared<KeyRequest>();
  set.add_option("USER", request->user, "A user of the machine")->required();
  set.add_option("KEY", request->key, "The key's plain name, in any letter case")->required();
  auto* value = set.add_option("VALUE", request->value, "The value; '' empties the key");
  set.add_flag("--stdin", request->from_input, "Read the value from standard input, for secrets");
  set.footer("Example: ondura set ann encpasswordnew --stdin < secret.txt");
  set.callback([&globals, request, value] { SetValue(globals, *request, value->count() > 0); });
}

void AddGetCommand(CLI::App& app, const Globals& globals) {
  auto& get = *app.add_subcommand("get", "Shows one value, or without KEY every value that is set");
  auto request = std::make_shared<KeyRequest>();
  get.add_option("USER", request->user, "A user of the machine")->required();
  get.add_option("KEY", request->key, "The key's plain name, in any letter case");
  get.add_flag("--json", request->as_json, "As a JSON object");
  get.footer(KeyList() + "Example: ondura get ann serverip");
  get.callback([&globals, request] {
    if (request->key.empty()) {
      GetAllValues(globals, *request);
    } else {
      GetValue(globals, *request);
    }
  });
}

}  // namespace ondura
