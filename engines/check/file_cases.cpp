// What is saved and comes back: groups 4 to 6, 10 and 11.

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "engine/engine_results.h"
#include "engines/check/engine_check.h"
#include "engines/common/door.h"
#include "text/text.h"

namespace ondura::check {

namespace fs = std::filesystem;

namespace {

using namespace engine_results;

const std::string kFolder = kDocuments;

std::string Bytes(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>{file}, {}};
}

fs::path PathOf(const std::string& name) { return {std::u8string{name.begin(), name.end()}}; }

std::string BackUp(CheckMachine& house) {
  house.SetStatus(profile_keys::kRetValue, "0");
  return house.Back(EngineCommand::kTransfer);
}

// The file comes back with the same bytes and its time to the second.
void ExpectBack(CheckMachine& house, const std::string& path, const std::string& bytes,
                const std::string& at = {}) {
  const fs::path back = house.Restored(path, at);
  Require(fs::exists(back), path + " did not come back to " + back.string());
  Expect("the bytes of " + path, bytes, Bytes(back));
}

std::string NewestSnapshot(CheckMachine& house) {
  return house.Ask(engines::door_verbs::kSnapshots).back().value("id", "");
}

void Rounds(const CheckPlan& plan) {
  CheckMachine house(plan, "rounds");
  house.Put(kFolder + "same.txt", "same");
  house.Put(kFolder + "changes.txt", "before");
  house.Put(kFolder + "goes.txt", "goes");
  house.Put(kFolder + "sub\\moves.txt", "moves");
  house.Select({kFolder});
  Expect("the first run", kDone.Text(), BackUp(house));
  const std::set<std::string> all{kFolder + "same.txt", kFolder + "changes.txt", kFolder + "goes.txt",
                                  kFolder + "sub\\moves.txt"};
  ExpectNames("ToBackup.txt after the first run", all, house.Sent());
  for (const std::string& path : all) {
    Require(house.NewestLog().find(path) != std::string::npos, "the session log has no line of " + path);
  }
  Expect("a run with nothing new", kNothingNew.Text(), BackUp(house));
  ExpectNames("noToBackup.txt of a run with nothing new", all, house.InSync());
  ExpectNames("ToBackup.txt of a run with nothing new", {}, house.Sent());

  const bool restores = house.Offers(engines::door_verbs::kRestore);
  const std::string before = restores ? NewestSnapshot(house) : "";
  house.Put(kFolder + "changes.txt", "after, and longer");
  house.Remove(kFolder + "goes.txt");
  fs::rename(house.HostPath(kFolder + "sub\\moves.txt"), house.HostPath(kFolder + "sub\\moved.txt"));
  Expect("a run after changes", kDone.Text(), BackUp(house));
  ExpectNames("ToBackup.txt after changes", {kFolder + "changes.txt", kFolder + "sub\\moved.txt"},
              house.Sent());
  ExpectNames("noToBackup.txt after changes", {kFolder + "same.txt"}, house.InSync());
  if (!restores) throw NotOffered("restore; lists and results are right");
  ExpectBack(house, kFolder + "changes.txt", "after, and longer");
  ExpectBack(house, kFolder + "changes.txt", "before", before);
  ExpectBack(house, kFolder + "goes.txt", "goes", before);
  ExpectBack(house, kFolder + "sub\\moved.txt", "moves");
}

void Times(const CheckPlan& plan) {
  CheckMachine house(plan, "times");
  house.Put(kFolder + "old.txt", "old");
  const fs::path host = house.HostPath(kFolder + "old.txt");
  fs::last_write_time(host, fs::last_write_time(host) - std::chrono::hours{1000});
  house.Select({kFolder});
  Expect("the run", kDone.Text(), BackUp(house));
  const fs::path back = house.Restored(kFolder + "old.txt");
  Require(fs::last_write_time(back) == fs::last_write_time(host), "the time of a file did not come back");
}

void Names(const CheckPlan& plan) {
  CheckMachine house(plan, "names");
  const fs::path host = house.HostPath(kFolder);
  const std::vector<std::string> names = TroublesomeNames();
  for (const std::string& name : names) std::ofstream(host / PathOf(name)) << name;
  std::ofstream(host / "case") << "small";
  std::ofstream(host / "CASE") << "large";
  house.Select({kFolder});
  const std::string result = BackUp(house);
  // Two names that differ in letter case alone are one to some stores, which then say so.
  Require(result == kDone.Text() || result == kSomeFailed.Text(), "the run ended with " + result);
  Require(house.Sent().size() >= names.size(),
          "ToBackup.txt has " + std::to_string(house.Sent().size()) + " names");
  const fs::path back = house.Restored(std::string{WithoutLast(kFolder)});
  for (const std::string& name : names) Expect("the file '" + name + "'", name, Bytes(back / PathOf(name)));
  if (result != kDone.Text()) return;
  for (const char* const name : {"case", "CASE"})
    Expect(std::string{"the file '"} + name + "'", Bytes(host / name), Bytes(back / name));
}

void LongPaths(const CheckPlan& plan) {
  CheckMachine house(plan, "long");
  std::string path = kFolder;
  while (path.size() < 300) path += "a folder with a rather long name\\";
  house.Put(path + "deep.txt", "deep");
  house.Select({kFolder});
  Expect("the run", kDone.Text(), BackUp(house));
  ExpectBack(house, path + "deep.txt", "deep");
  const std::string to = house.NewFolder();
  for (const char* const time : {"once", "over what is there"}) {
    const auto answers =
        house.Ask(engines::door_verbs::kRestore, {"--force=", "--to", to, std::string{WithoutLast(kFolder)}});
    Expect(std::string{"files that came back "} + time, "1",
           std::to_string(answers.back().value("files", 0)));
  }
}

// More than the host takes in one call; folders are made one in the other.
void VeryLongPaths(const CheckPlan& plan) {
  constexpr int kLevels = 24;
  CheckMachine house(plan, "verylong");
  const fs::path before = fs::current_path();
  fs::current_path(house.HostPath(kFolder));
  const std::string name(180, 'd');
  for (int level = 0; level < kLevels; ++level) {
    fs::create_directory(name);
    fs::current_path(name);
  }
  std::ofstream("deep.txt") << "deep";
  fs::current_path(before);
  house.Put(kFolder + "near.txt", "near");
  house.Select({kFolder});
  const std::string result = BackUp(house);
  // A store may be unable to keep it; then it says so, and keeps the rest.
  if (result != kDone.Text()) Expect("the run", kSomeFailed.Text(), result);
  Require(house.Sent().contains(kFolder + "near.txt"), "a very long path kept another file from being sent");
  if (result == kSomeFailed.Text()) {
    Require(house.NewestLog().find(name) != std::string::npos, "the log does not name the path that failed");
  }
}

void Exclusions(const CheckPlan& plan) {
  CheckMachine house(plan, "exclusions");
  const std::set<std::string> kept{kFolder + "Draft copy\\kept.txt", kFolder + "drafts.txt",
                                   kFolder + "x [1].txt"};
  for (const std::string& path : kept) house.Put(path, "kept");
  for (const char* const path : {"Draft\\a.txt", "Draft\\sub\\b.txt", "x [2].txt", "y $HOME.txt", "z .txt"}) {
    house.Put(kFolder + path, "left out");
  }
  house.Select({kFolder});
  house.Exclude({kFolder + "DRAFT"}, {kFolder + "x [2].txt", kFolder + "y $HOME.txt", kFolder + "Z .txt"});
  Expect("the run", kDone.Text(), BackUp(house));
  ExpectNames("what was sent", kept, house.Sent());
}

void ManyExclusions(const CheckPlan& plan) {
  CheckMachine house(plan, "many");
  house.Put(kFolder + "kept.txt", "kept");
  std::vector<std::string> files;
  for (int number = 0; number < 400; ++number) {
    files.push_back(kFolder + "f" + std::to_string(number));
    house.Put(files.back(), "left out");
  }
  house.Select({kFolder});
  house.Exclude({}, files);
  Expect("the run", kDone.Text(), BackUp(house));
  ExpectNames("what was sent", {kFolder + "kept.txt"}, house.Sent());
}

void Selections(const CheckPlan& plan) {
  CheckMachine house(plan, "selections");
  house.Put(kFolder + "a.doc", "a");
  house.Put(kFolder + "b.txt", "b");
  Expect("without a selection", kNothingSelected.Text(), BackUp(house));
  house.Select({kFolder});
  house.Exclude({kFolder}, {});
  Expect("with all of it excluded", kAllExcluded.Text(), BackUp(house));
  house.Exclude({}, {});
  house.Select({kFolder + "b.txt"});
  Expect("a single file", kDone.Text(), BackUp(house));
  ExpectNames("what was sent of a single file", {kFolder + "b.txt"}, house.Sent());
  const bool has_drive = *kDocumentsDrive != '\0';
  house.Select({has_drive ? kDocumentsDrive : kFolder});
  Expect("a whole drive", kDone.Text(), BackUp(house));
  ExpectNames("what was sent of a drive", {kFolder + "a.doc"}, house.Sent());
  house.Select({kFolder + "gone.txt", kFolder});
  Expect("with a chosen file that is gone", kSomeFailed.Text(), BackUp(house));
  Require(house.NewestLog().find("gone.txt") != std::string::npos,
          "the log does not name the file that is gone");
}

void ByEnding(const CheckPlan& plan) {
  CheckMachine house(plan, "ending");
  house.Put(kFolder + "a.doc", "a");
  house.Put(kFolder + "sub\\b.doc", "b");
  house.Put(kFolder + "c.txt", "c");
  house.SelectByEnding({".doc"});
  Expect("the run", kDone.Text(), BackUp(house));
  const std::set<std::string> sent = house.Sent();
  Require(sent.contains(kFolder + "a.doc") && sent.contains(kFolder + "sub\\b.doc") &&
              !sent.contains(kFolder + "c.txt"),
          "not the files of the ending were sent");
}

void Stage(const CheckPlan& plan) {
  CheckMachine house(plan, "stage");
  house.SetHeaderWord("2");
  const std::string folder = kFolder + "Dumps";
  house.SetProfile(profile_keys::kSqlTemp, folder);
  house.Put(folder + "\\[one].dmp", "dump");
  Expect("a dump without a selection", kDone.Text(), BackUp(house));
  ExpectNames("what was sent", {folder + "\\[one].dmp"}, house.Sent());
}

void Unreadable(const CheckPlan& plan) {
  CheckMachine house(plan, "unreadable");
  house.Put(kFolder + "a.txt", "a");
  house.Put(kFolder + "closed.txt", "closed");
  const auto closed = MakeUnreadable(house.HostPath(kFolder + "closed.txt"));
  house.Select({kFolder});
  Expect("the run", kSomeFailed.Text(), BackUp(house));
  Require(house.NewestLog().find("closed.txt") != std::string::npos, "the log does not name the file");
  ExpectBack(house, kFolder + "a.txt", "a");
}

// Each second file goes while the engine looks at the folder.
void Vanishing(const CheckPlan& plan) {
  constexpr int kFiles = 2000;
  CheckMachine house(plan, "vanishing");
  const auto name_of = [](int number) { return kFolder + std::to_string(number) + ".txt"; };
  for (int number = 0; number < kFiles; ++number) house.Put(name_of(number), std::to_string(number));
  house.Select({kFolder});
  house.SetStatus(profile_keys::kRetValue, "0");
  const ProcessHandle engine = house.Start(EngineParameters(EngineCommand::kTransfer, "\\1"));
  for (int number = 1; number < kFiles; number += 2) {
    house.Remove(name_of(number));
    house.machine().clock.Sleep(std::chrono::milliseconds{20});
  }
  while (!house.WaitForEnd(engine, std::chrono::seconds{1})) continue;
  const std::string result = house.Result();
  Require(result == kDone.Text() || result == kSomeFailed.Text(), "the run ended with " + result);
  const fs::path back = house.Restored(std::string{WithoutLast(kFolder)});
  for (int number = 0; number < kFiles; number += 2) {
    const std::string text = std::to_string(number);
    Expect("the file " + text, text, Bytes(back / (text + ".txt")));
  }
}

void Large(const CheckPlan& plan) {
  constexpr int kFiles = 200'000;
  constexpr std::uint64_t kMostBytes = 150'000'000;
  CheckMachine house(plan, "large");
  const std::string host = house.HostPath(kFolder);
  for (int number = 0; number < kFiles; ++number) {
    const std::string folder = host + "/" + std::to_string(number / 500);
    if (number % 500 == 0) fs::create_directories(folder);
    std::ofstream(folder + "/" + std::to_string(number)) << number;
  }
  house.Select({kFolder});
  for (const EngineResult result : {kDone, kNothingNew}) {
    house.SetStatus(profile_keys::kRetValue, "0");
    const ProcessHandle engine = house.Start(EngineParameters(EngineCommand::kTransfer, "\\1"));
    const int id = static_cast<int>(house.machine().processes.IdOf(engine));
    std::uint64_t most = 0;
    while (!house.WaitForEnd(engine, std::chrono::seconds{0})) {
      std::uint64_t sum = 0;
      for (const HostProgram& program : ProgramsBelow(id)) sum += program.resident_bytes;
      most = std::max(most, sum);
      house.machine().clock.Sleep(std::chrono::milliseconds{1000});
    }
    Expect("the run over 200,000 files", result.Text(), house.Result());
    Require(most <= kMostBytes, "engine and programs took " + std::to_string(most / 1'000'000) + " MB");
  }
}

}  // namespace

std::vector<CheckCase> FileCases() {
  return {
      {"files.rounds", "first, unchanged, changed, deleted and renamed files, and both times back", Rounds},
      {"files.times", "a file keeps its time", Times},
      {"files.stage", "a dump is saved without a selection", Stage},
      {"names.any", "every name that a folder can have", Names},
      {"names.long", "paths of more than 256 characters", LongPaths},
      {"names.verylong", "a path of more than 4,096 bytes keeps nothing else from being saved",
       VeryLongPaths},
      {"select.exclusions", "exact exclusions, whatever their letter case", Exclusions},
      {"select.many", "hundreds of exclusions", ManyExclusions},
      {"select.cases", "nothing, all excluded, one file, a drive, a file that is gone", Selections},
      {"select.ending", "files by the ends of their names", ByEnding},
      {"trouble.unreadable", "an unreadable file fails alone", Unreadable},
      {"trouble.vanishing", "files that go while it looks keep no other from being saved", Vanishing},
      {"files.large", "200,000 files within 150 MB", Large, true},
  };
}

}  // namespace ondura::check
