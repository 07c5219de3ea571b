#include <iostream>
#include <memory>

#include "OpenedMachine.h"
#include "ValueWriter.h"
#include "commands.h"
#include "text/text.h"

namespace ondura {

namespace {

struct PauseForm {
  const char* name;
  const char* description;
  const char* value;  // of ScheduleDisable
  const char* done;
  const char* already;
};

constexpr PauseForm kPause = {"pause", "Switches a user's schedules off; nothing of them is lost", "TRUE",
                              "No schedule of %s runs until 'ondura resume %s'. A job that runs now goes on.",
                              "The schedules of %s are switched off already."};
constexpr PauseForm kResume = {"resume", "Switches a user's schedules on again", "FALSE",
                               "The schedules of %s run again. What came due meanwhile is looked at in the "
                               "next pass, and is missed where it is too late.",
                               "The schedules of %s are on already."};

std::string ForUser(const std::string& text, const std::string& user) { return ReplaceAll(text, "%s", user); }

void SetPaused(const Globals& globals, const std::string& user, const PauseForm& form) {
  OpenedMachine opened(globals);
  opened.Serve(user);
  const auto lock = opened.LockForChange();
  const std::string& name = opened.installation().CurrentUser;
  const std::string kept = opened.keys().Read(profile_keys::kScheduleDisable);
  const bool is_on = kept.empty() || kept == kResume.value;
  if (is_on == (form.value == std::string_view{kResume.value})) {
    std::cout << ForUser(form.already, name) << "\n";
    return;
  }
  ValueWriter(opened.keys()).Write(profile_keys::kScheduleDisable, form.value);
  std::cout << ForUser(form.done, name) << "\n";
}

void AddForm(CLI::App& app, const Globals& globals, const PauseForm& form) {
  auto& command = *app.add_subcommand(form.name, form.description);
  auto user = std::make_shared<std::string>();
  command.add_option("USER", *user, "A user of the machine")->required();
  command.footer(std::string{"Example: ondura "} + form.name + " ann");
  command.callback([&globals, user, &form] { SetPaused(globals, *user, form); });
}

}  // namespace

void AddPauseCommands(CLI::App& app, const Globals& globals) {
  AddForm(app, globals, kPause);
  AddForm(app, globals, kResume);
}

}  // namespace ondura
