// How an engine is called, and what each command leaves: groups 1 to 3.

#include <filesystem>
#include <fstream>

#include "engine/engine_results.h"
#include "engines/check/engine_check.h"
#include "text/text.h"

namespace ondura::check {

namespace {

using namespace engine_results;

void Arguments(const CheckPlan& plan) {
  CheckMachine house(plan, "arguments");
  for (const char* const argument :
       {"", "C:\\a folder with blanks\\x y", "C:\\gone\\12_30_05_305", "\\1\\2\\3"}) {
    house.SetStatus(profile_keys::kRetValue, "0");
    Expect("12 with '" + std::string{argument} + "'", kDone.Text(),
           house.Run(EngineParameters(EngineCommand::kFirstContact, argument)));
  }
  house.SetStatus(profile_keys::kRetValue, "0");
  Expect("17 without brackets", kDone.Text(), house.Run(EngineParameters(EngineCommand::kRemote)));
}

void UnknownNumber(const CheckPlan& plan) {
  CheckMachine house(plan, "unknown");
  const std::string unknown = EngineParameters(static_cast<EngineCommand>(99), "");
  const std::string open = EngineParameters(EngineCommand::kTransfer) + "<";
  for (const std::string& text : {unknown, open, std::string{" x<>"}, std::string{}}) {
    house.SetStatus(profile_keys::kRetValue, "77");
    Expect("after '" + text + "' the last result", "77", house.Run(text));
  }
}

void EachCommand(const CheckPlan& plan) {
  CheckMachine house(plan, "commands");
  house.Put(std::string{kDocuments} + "a.txt", "a");
  house.Select({kDocuments});
  for (const EngineCommand command : kEngineCommands) {
    house.SetStatus(profile_keys::kRetValue, "0");
    Expect("the result of " + NumberOf(command), kDone.Text(), house.Back(command));
  }
  const auto lines = house.PortLines();
  Require(lines.size() == 2, "24 has to leave two lines in DLLOutput1.txt, the port and the address");
  Expect("the port", "11905", lines[0]);
  Expect("the address", "localhost", lines[1]);
  for (const ProfileKey* const key : {&profile_keys::kQuotaUsed, &profile_keys::kQuotaMax}) {
    Require(ParseInteger(house.Quota(*key)).value_or(-1) >= 0,
            "16 has to leave a number in " + std::string{key->name} + " of section QuotaStatus");
  }
}

bool HoldsSecret(const std::string& text) {
  return text.find(kAccountPassword) != std::string::npos || text.find(kStorePassword) != std::string::npos;
}

void NoSecrets(const CheckPlan& plan) {
  CheckMachine house(plan, "secrets");
  house.SlowDown();
  for (int number = 0; number < 20; ++number) {
    house.Put(kDocuments + std::to_string(number), std::string(100'000, static_cast<char>('a' + number)));
  }
  house.Select({kDocuments});
  const ProcessHandle engine = house.Start(EngineParameters(EngineCommand::kTransfer, "\\1"));
  const int id = static_cast<int>(house.machine().processes.IdOf(engine));
  for (int look = 0; look < 100 && !house.WaitForEnd(engine, std::chrono::seconds{0}); ++look) {
    for (const HostProgram& program : ProgramsBelow(id)) {
      Require(!HoldsSecret(program.command_line), "a secret on a command line: " + program.command_line);
      Require(!HoldsSecret(program.environment), "a secret in the environment of " + program.command_line);
    }
    house.machine().clock.Sleep(std::chrono::milliseconds{300});
  }
  house.machine().processes.Terminate(engine, 1);
  house.SetPasswords("wrong-" + std::string{kAccountPassword}, kStorePassword);
  house.Back(EngineCommand::kPortNumber);
  for (const auto& entry : std::filesystem::recursive_directory_iterator{house.DataFolder()}) {
    if (!entry.is_regular_file() || entry.file_size() > 1'000'000) continue;
    std::ifstream file(entry.path(), std::ios::binary);
    std::string text{std::istreambuf_iterator<char>{file}, {}};
    std::erase(text, '\0');  // UTF-16 counts as well
    Require(!HoldsSecret(text), "a secret in the clear in " + entry.path().string());
  }
}

}  // namespace

std::vector<CheckCase> CallCases() {
  return {
      {"call.arguments", "any argument, an empty one, and none for 17", Arguments},
      {"call.unknown", "a number that is no command writes nothing", UnknownNumber},
      {"call.results", "each command leaves its result, 24 two lines, 16 both quota keys", EachCommand},
      {"call.secrets", "no secret on a command line, in an environment or in a file", NoSecrets},
  };
}

}  // namespace ondura::check
