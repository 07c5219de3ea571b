#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <nlohmann/json.hpp>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "engine/engine_command.h"
#include "engines/check/check_system.h"
#include "profile/Installation.h"
#include "profile/Transfer.h"
#include "util/TextFiles.h"

namespace ondura::check {

// An engine that does not do what it has to.
struct CheckFailed : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// An engine that says of itself that it does not do this.
struct NotOffered : std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct CheckPlan {
  std::string engine;  // the program, a file of the host
  std::string store;   // a location for the engine's settings; empty for its own default
  std::string folder;  // of the host, for the machines; made and removed by the caller
};

inline constexpr const char* kAccountPassword = "swordfish-7401";
inline constexpr const char* kStorePassword = "rosebud-2956";

// A machine in a folder with the engine in place and one user, ann, whose job is running: all that an engine
// may find when a job starts it. Files lie in kDocuments.
class CheckMachine {
 public:
  // Throws std::runtime_error if it can't be made.
  CheckMachine(const CheckPlan& plan, const std::string& name);

  [[nodiscard]] const Machine& machine() const { return ground_.owner->machine(); }
  [[nodiscard]] std::string HostPath(std::string_view path) const;
  [[nodiscard]] std::string DataFolder() const { return HostPath(ground_.data); }
  [[nodiscard]] std::string UserFile(std::string_view name) const { return installation_.UserFile(name); }

  // What is on the machine.
  void Put(const std::string& path, std::string_view bytes);
  void Remove(const std::string& path);
  void Select(const std::vector<std::string>& items);
  void Exclude(const std::vector<std::string>& folders, const std::vector<std::string>& files);
  void SelectByEnding(const std::vector<std::string>& endings);
  void UseList(bool uses);
  void SetPasswords(std::string_view account, std::string_view encryption);
  void SetStatus(const ProfileKey& key, std::string_view value);
  void SetHeaderWord(std::string_view word);
  void SetProfile(const ProfileKey& key, std::string_view value);

  // Makes the transfers of engines that take hints slow: a file a second, or 64 KiB a second.
  // One key of the engine's settings, and the space of the rehearsal engine's account.
  void SetEngine(std::string_view section, std::string_view key, std::string_view value);
  void SetSpace(std::uint64_t bytes);

  void SlowDown() { SetPace(1000 * ground_.speed, 64); }
  void SpeedUp() { SetPace(0, 0); }

  // Starts the engine as the job does, and waits for its end. The result in the profile.
  ProcessHandle Start(const std::string& parameters);
  bool WaitForEnd(ProcessHandle engine, std::chrono::seconds limit);
  std::string Run(const std::string& parameters, std::chrono::seconds limit = std::chrono::seconds{120});
  std::string Back(EngineCommand command) { return Run(EngineParameters(command, "\\12_30_05_305")); }
  [[nodiscard]] std::string Result();

  // Command 51 with the compare list, which is written as a job does it: part by part while the engine runs.
  std::string RunWithList(const std::vector<std::vector<std::string>>& parts);
  void WriteListPart(int number, const std::vector<std::string>& paths);

  // What the engine left.
  std::set<std::string> Sent() { return NamesIn("ToBackup.txt"); }
  std::set<std::string> InSync() { return NamesIn("noToBackup.txt"); }
  std::string NewestLog();
  std::string Quota(const ProfileKey& key);
  [[nodiscard]] std::vector<std::string> PortLines();

  // The second door. Throws NotOffered for a verb that the engine does not offer.
  std::vector<nlohmann::json> Ask(std::string_view verb, const std::vector<std::string>& words = {});
  bool Offers(std::string_view verb);

  // A path of the host where nothing is yet.
  std::string NewFolder() {
    return (std::filesystem::path{root_} / ("back-" + std::to_string(++restores_))).string();
  }

  // Where a file of the machine came back to, in a fresh folder. Throws CheckFailed if the engine does not
  // bring it.
  std::string Restored(const std::string& path, const std::string& at = {});

  // The folder of the host that the store is in. Throws NotOffered where the engine does not say, or it is no
  // folder.
  std::string StoreFolder();

 private:
  std::set<std::string> NamesIn(std::string_view name);
  void SetPace(int milliseconds_per_file, int upload_kib);
  void WriteProduct(const CheckPlan& plan);
  [[nodiscard]] PipedRequest RequestFor(std::string_view verb, const std::vector<std::string>& words);

  std::string root_;
  CheckGround ground_;
  Installation installation_;
  std::unique_ptr<Transfer> transfer_;
  std::unique_ptr<TextFiles> text_files_;
  int restores_ = 0;
};

// Throws CheckFailed with both texts if they differ.
void Expect(const std::string& what, const std::string& wanted, const std::string& found);
void ExpectNames(const std::string& what, const std::set<std::string>& wanted,
                 const std::set<std::string>& found);
void Require(bool holds, const std::string& what);

}  // namespace ondura::check
