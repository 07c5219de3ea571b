#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/machine.h"

namespace ondura::scenario {

// Everything lies below one folder, so that a run leaves nothing else behind.
inline constexpr const char* kRoot = "C:\\Scenario\\";
inline constexpr const char* kInstall = "C:\\Scenario\\Install\\";
inline constexpr const char* kData = "C:\\Scenario\\Data\\";
inline constexpr const char* kEngine = "C:\\Scenario\\Install\\ScnClsClient.exe";
inline constexpr const char* kDatabaseManager = "C:\\Scenario\\Install\\OnduraSDBManager.exe";

// One machine that the scenario is played on.
struct Stage {
  const Machine& outside;              // as the user interface and a person see it
  const Machine& component;            // as the component sees it
  std::function<void()> put_programs;  // puts the engine and the database manager into their places
};

// Every file under `folder`, which ends in a backslash, as text: names in order, ini files with their keys in
// order, UTF-16 shown as UTF-8, and what differs from run to run - times, durations, process numbers - by its
// kind. A day is told from `today`, so that the next occurrence stays comparable.
std::string CanonicalFiles(const Machine& machine, const std::string& folder, LocalTime today);

// Three users are due: ann is backed up by compare list, ben by the local database, and cat's password is
// refused. Throws std::runtime_error where the machine refuses to be prepared.
void Prepare(const Stage& stage);

// Runs the component until nobody is due any more.
void Run(const Stage& stage);

// What the files hold, in a form that no two machines may differ in.
std::string Show(const Stage& stage);

// All three, and what the last one says.
std::string Play(const Stage& stage);

// Each program's own: plays on its machine and prints what that leaves. The exit code, 2 for a wrong call.
int PlayOnMachine(const std::vector<std::string>& arguments);

}  // namespace ondura::scenario
