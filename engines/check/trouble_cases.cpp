// Wrong passwords, a store that is away, stops, kills and two at once: groups 8, 9 and 12.

#include <algorithm>
#include <filesystem>
#include <tuple>

#include "engine/engine_results.h"
#include "engines/check/SilentServer.h"
#include "engines/check/engine_check.h"
#include "engines/common/door.h"
#include "text/text.h"

namespace ondura::check {

namespace fs = std::filesystem;

namespace {

using namespace engine_results;
using namespace std::chrono_literals;

const std::string kFolder = kDocuments;

void Fill(CheckMachine& house, int files) {
  for (int number = 0; number < files; ++number) {
    house.Put(kFolder + std::to_string(number),
              std::string(100'000, static_cast<char>('a' + number % 26)) + std::to_string(number * 7919));
  }
  house.Select({kFolder});
}

std::string BackUp(CheckMachine& house) {
  house.SetStatus(profile_keys::kRetValue, "0");
  house.SetStatus(profile_keys::kCancel, "0");
  house.SetStatus(profile_keys::kStatus, "1");
  return house.Back(EngineCommand::kTransfer);
}

void WrongPasswords(const CheckPlan& plan) {
  CheckMachine house(plan, "passwords");
  Fill(house, 1);
  Expect("the first contact", kDone.Text(), house.Back(EngineCommand::kPortNumber));
  house.SetPasswords(kAccountPassword, "wrong");
  for (const EngineCommand command :
       {EngineCommand::kPortNumber, EngineCommand::kServerList, EngineCommand::kTransfer}) {
    Expect("command " + NumberOf(command) + " with a wrong encryption password",
           kWrongEncryptionPassword.Text(), house.Back(command));
  }
  house.SetPasswords("", kStorePassword);
  Expect("without an account password", kWrongPassword.Text(), house.Back(EngineCommand::kPortNumber));
  house.SetPasswords(kAccountPassword, kStorePassword);
  Expect("with the right ones again", kDone.Text(), house.Back(EngineCommand::kPortNumber));
}

void StoreAway(const CheckPlan& plan) {
  CheckMachine house(plan, "away");
  Fill(house, 2);
  Expect("the first run", kDone.Text(), BackUp(house));
  const std::string store = house.StoreFolder();
  fs::rename(store, store + ".away");
  for (const EngineCommand command : {EngineCommand::kPortNumber, EngineCommand::kTransfer}) {
    Expect("command " + NumberOf(command) + " without the store", kCannotConnect.Text(), house.Back(command));
  }
  Require(!fs::exists(store), "a store that was there once was made anew");
  fs::rename(store + ".away", store);
  Expect("with the store back", kNothingNew.Text(), BackUp(house));
}

void OtherStore(const CheckPlan& plan) {
  CheckMachine house(plan, "mine");
  CheckMachine other(plan, "other");
  for (CheckMachine* const each : {&house, &other}) {
    Fill(*each, 1);
    Expect("the first run", kDone.Text(), BackUp(*each));
  }
  const std::string store = house.StoreFolder();
  fs::remove_all(store);
  fs::copy(other.StoreFolder(), store, fs::copy_options::recursive);
  Expect("with another user's store in place", kCannotConnect.Text(), house.Back(EngineCommand::kTransfer));
}

// A server that takes the connection and says nothing must not hold up a job: command 24 is waited for.
void Hung(const CheckPlan& plan) {
  CheckMachine house(plan, "hung");
  house.StoreFolder();  // an engine that says where its store is takes another one from its settings
  const SilentServer server;
  house.SetEngine("Store", "Repository", "rest:http://127.0.0.1:" + std::to_string(server.port()) + "/ann/");
  house.SetStatus(profile_keys::kRetValue, "0");
  Expect("command 24 with a server that says nothing", kCannotConnect.Text(),
         house.Run(EngineParameters(EngineCommand::kPortNumber, ""), 40s));
}

void Full(const CheckPlan& plan) {
  CheckMachine house(plan, "full");
  Fill(house, 1);
  Expect("with room enough", kDone.Text(), BackUp(house));
  house.SetSpace(150'000);
  for (int number = 1; number < 8; ++number) {
    std::string bytes;
    for (int at = 0; at < 20'000; ++at) bytes += std::to_string(at * 7919 * number);
    house.Put(kFolder + std::to_string(number), bytes);
  }
  Expect("with the space used up", kQuotaUsedUp.Text(), BackUp(house));
  Expect("command 16 after that, which the job reports", kQuotaUsedUp.Text(),
         house.Back(EngineCommand::kTotalSize));
  house.SetSpace(100'000'000);
  Expect("with more space", kDone.Text(), BackUp(house));
  Expect("command 16 with more space", kDone.Text(), house.Back(EngineCommand::kTotalSize));
  Require(house.Sent().size() + house.InSync().size() == 8, "not every file is saved once there is room");
}

// The numbers of the programs that run below the engine once its transfer shows itself.
std::vector<HostProgram> WaitForTransfer(CheckMachine& house, ProcessHandle engine) {
  const int id = static_cast<int>(house.machine().processes.IdOf(engine));
  for (int look = 0; look < 200; ++look) {
    Require(!house.WaitForEnd(engine, 0s), "the transfer ended at once; it is to take long");
    if (!house.NewestLog().empty() && look > 20) break;
    house.machine().clock.Sleep(1000ms);
  }
  return ProgramsBelow(id);
}

void Stops(const CheckPlan& plan) {
  for (const auto& [key, value, result] : {std::tuple{&profile_keys::kCancel, "1", kCancelled},
                                           std::tuple{&profile_keys::kStatus, "5", kCancelled},
                                           std::tuple{&profile_keys::kStatus, "10", kCancelledByServer}}) {
    CheckMachine house(plan, "stop-" + std::string{key->name} + value);
    house.SlowDown();
    Fill(house, 40);
    const ProcessHandle engine = house.Start(EngineParameters(EngineCommand::kTransfer, "\\1"));
    WaitForTransfer(house, engine);
    house.SetStatus(*key, value);
    Require(house.WaitForEnd(engine, 9s),
            std::string{key->name} + " " + value + " did not end it within nine seconds");
    Expect("the result of " + std::string{key->name} + " " + value, result.Text(), house.Result());
    // The mail's subject is the end of this line.
    const std::string log = house.NewestLog();
    Require(log.find(result == kCancelled ? "Backup Canceled" : "hard stop") != std::string::npos &&
                log.find("[Backed up Files : ") != std::string::npos,
            "the session log does not end with how it was stopped");
  }
}

void Kill(const CheckPlan& plan) {
  CheckMachine house(plan, "kill");
  house.SlowDown();
  Fill(house, 40);
  const ProcessHandle engine = house.Start(EngineParameters(EngineCommand::kTransfer, "\\1"));
  const auto programs = WaitForTransfer(house, engine);
  house.machine().processes.Terminate(engine, 1);
  house.machine().clock.Sleep(10'000ms);
  for (const HostProgram& program : programs) {
    Require(!IsRunning(program.id), "a program outlived the engine: " + program.command_line);
  }
  house.SpeedUp();
  Expect("the run after a kill", kDone.Text(), BackUp(house));
  Require(house.Sent().size() + house.InSync().size() == 40, "not every file is saved after a kill");
}

void TwoAtOnce(const CheckPlan& plan) {
  CheckMachine house(plan, "two");
  house.SlowDown();
  Fill(house, 20);
  const ProcessHandle first = house.Start(EngineParameters(EngineCommand::kTransfer, "\\1"));
  WaitForTransfer(house, first);
  const std::string second = BackUp(house);
  Require(second == kLocked.Text() || second == kDone.Text() || second == kNothingNew.Text(),
          "a second transfer at once ended with " + second);
  house.machine().processes.Terminate(first, 1);
}

}  // namespace

std::vector<CheckCase> TroubleCases() {
  return {
      {"trouble.passwords", "wrong passwords, and right ones again", WrongPasswords},
      {"trouble.away", "a store that is away is not made anew, and serves again when it is back", StoreAway},
      {"trouble.other", "a store that was changed for another is refused", OtherStore},
      {"stop.requests", "Cancel, Status 5 and Status 10 end it within nine seconds", Stops},
      {"stop.kill", "a kill leaves no program behind, and the next run succeeds", Kill},
      {"trouble.hung", "a server that says nothing is given up", Hung},
      {"trouble.full", "a store without room says so, and goes on with more", Full},
      {"trouble.two", "two transfers at once do no harm", TwoAtOnce},
  };
}

}  // namespace ondura::check
