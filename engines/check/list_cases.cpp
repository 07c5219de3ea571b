// The compare list: group 7.

#include "engine/engine_files.h"
#include "engine/engine_results.h"
#include "engines/check/engine_check.h"
#include "text/text.h"

namespace ondura::check {

namespace {

using namespace engine_results;
using namespace std::chrono_literals;

const std::string kFolder = kDocuments;

void PutThree(CheckMachine& house) {
  for (const char* const name : {"a.txt", "b.txt", "c.txt"}) house.Put(kFolder + name, name);
  house.Select({kFolder});
  house.UseList(true);
}

void Parts(const CheckPlan& plan) {
  CheckMachine house(plan, "parts");
  PutThree(house);
  house.WriteListPart(1, {kFolder + "old.txt"});  // of the job before
  Expect("a list of two parts", kDone.Text(),
         house.RunWithList({{kFolder + "a.txt", kFolder + "b.txt"}, {kFolder + "c.txt"}}));
  ExpectNames("what was sent", {kFolder + "a.txt", kFolder + "b.txt", kFolder + "c.txt"}, house.Sent());
  Expect("the same list again", kNothingNew.Text(),
         house.RunWithList({{kFolder + "a.txt", kFolder + "b.txt", kFolder + "c.txt"}}));
}

void Gone(const CheckPlan& plan) {
  CheckMachine house(plan, "gone");
  PutThree(house);
  Expect(
      "a list with a file that is gone", kSomeFailed.Text(),
      house.RunWithList({{kFolder + "a.txt", kFolder + "b.txt", kFolder + "c.txt", kFolder + "gone.txt"}}));
  Require(house.NewestLog().find("gone.txt") != std::string::npos, "the log does not name the file");
}

void MissingPart(const CheckPlan& plan) {
  CheckMachine house(plan, "missing");
  PutThree(house);
  house.SetStatus(profile_keys::kRetValue, "0");
  house.SetStatus(profile_keys::kCompareListCount, "0");
  house.SetStatus(profile_keys::kStatusCheckCount, "2");
  house.WriteListPart(1, {kFolder + "a.txt"});
  Expect("a part that is announced and missing", kEndedAbnormally.Text(),
         house.Run(EngineParameters(EngineCommand::kTransfer, "\\1")));
}

void NoEnd(const CheckPlan& plan) {
  CheckMachine house(plan, "noend");
  PutThree(house);
  house.SetStatus(profile_keys::kCompareListCount, "0");
  house.SetStatus(profile_keys::kStatusCheckCount, "0");
  const ProcessHandle engine = house.Start(EngineParameters(EngineCommand::kTransfer, "\\1"));
  house.WriteListPart(1, {kFolder + "a.txt"});
  Require(!house.WaitForEnd(engine, 3s), "the engine ended before the list did");
  house.SetStatus(profile_keys::kCancel, "1");
  Require(house.WaitForEnd(engine, 9s), "a list without end: Cancel did not end the engine");
  Expect("the result of Cancel", kCancelled.Text(), house.Result());
}

}  // namespace

std::vector<CheckCase> ListCases() {
  return {
      {"list.parts", "a list that grows, in two parts, over an old one", Parts},
      {"list.gone", "a listed file that is gone has failed", Gone},
      {"list.missing", "a part that is announced and missing ends abnormally", MissingPart},
      {"list.endless", "a list without end can be cancelled", NoEnd},
  };
}

}  // namespace ondura::check
