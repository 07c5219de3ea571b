#include "next_steps.h"

#include <chrono>
#include <string_view>

#include "Failure.h"
#include "HostNotes.h"
#include "OpenedMachine.h"
#include "ScheduleFile.h"
#include "SelectionList.h"
#include "profile/user_defaults.h"
#include "schedule/schedule_record.h"

namespace ondura {

namespace {

// A host notes its passes to about ten minutes.
constexpr std::chrono::minutes kHostIsGoneAfter{25};

std::string WithRoot(const Globals& globals, const std::string& command) {
  return "ondura --root " + (globals.root.empty() ? "DIR" : "'" + globals.root + "'") + " " + command;
}

std::vector<NextStep> ForNewMachine(const Globals& globals) {
  return {{"Make the machine in a folder", WithRoot(globals, "init")},
          {"Add a user", WithRoot(globals, "user add NAME")},
          {"Say what is to be backed up", WithRoot(globals, "select NAME PATH")}};
}

void AddForUser(OpenedMachine& opened, const std::string& user, std::vector<NextStep>& steps) {
  opened.ServeNew(user);
  const Machine& machine = opened.machine();
  const Installation& installation = opened.installation();
  if (opened.keys().Read(profile_keys::kPassword).empty()) {
    steps.push_back(
        {user + " has no account password", "ondura set " + user + " password --stdin < password.txt"});
  }
  if (SelectionList(machine, installation.UserFile(kSelectionListFile)).Entries().empty()) {
    steps.push_back({user + " has nothing selected", "ondura select " + user + " PATH"});
  }
  if (ScheduleFile(machine, installation.UserFile(kScheduleFileName)).Records().empty()) {
    steps.push_back(
        {user + " has no schedule", "ondura schedule add " + user + " --at 22:00 --repeat daily"});
  }
}

bool HostIsAway(const OpenedMachine& opened) {
  const auto last = HostNotes(opened.machine(), opened.installation()).LastTick();
  return !last || opened.machine().clock.Now() - *last > kHostIsGoneAfter;
}

}  // namespace

std::vector<NextStep> NextSteps(const Globals& globals) {
  try {
    OpenedMachine opened(globals);
    std::vector<NextStep> steps;
    const auto users = opened.Users();
    if (users.empty()) steps.push_back({"There are no users", "ondura user add NAME"});
    for (const std::string& user : users) AddForUser(opened, user, steps);
    if (HostIsAway(opened)) {
      steps.push_back({"No host runs the schedules", "ondura-host service --root '" + globals.root + "'"});
    }
    if (!steps.empty()) return steps;
    return {{"See how the backups go", "ondura status"},
            {"See what was saved", "ondura snapshots " + users.front()},
            {"Bring something back", "ondura restore " + users.front() + " PATH --to FOLDER"}};
  } catch (const Failure&) {
    return ForNewMachine(globals);
  }
}

}  // namespace ondura
