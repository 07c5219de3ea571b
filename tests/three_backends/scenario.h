#pragma once

#include <functional>
#include <string>

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

// Three users are due: ann is backed up by compare list, ben by the local database, and cat's password is
// refused. Throws std::runtime_error where the machine refuses to be prepared.
void Prepare(const Stage& stage);

// Runs the component until nobody is due any more.
void Run(const Stage& stage);

// What stands in the files, in a form that no two machines may differ in.
std::string Show(const Stage& stage);

// All three, and what the last one says.
std::string Play(const Stage& stage);

}  // namespace ondura::scenario
