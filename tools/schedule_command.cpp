#include <algorithm>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>

#include "Failure.h"
#include "OpenedMachine.h"
#include "ScheduleFile.h"
#include "commands.h"
#include "schedule/record_dates.h"
#include "schedule_plan.h"
#include "text/text.h"

namespace ondura {

namespace {

struct ScheduleRequest {
  std::string user;
  SchedulePlan plan;
  bool replace = false;
  std::size_t number = 0;
  bool all = false;
  bool as_json = false;
};

ScheduleFile Load(const OpenedMachine& opened) {
  ScheduleFile file{opened.machine(), opened.installation().UserFile(kScheduleFileName)};
  if (file.IsUnreadable()) {
    throw Failure(Exit::kFailed, "can't read the schedule file of " + opened.installation().CurrentUser +
                                     "; look at its rights and at who has it open");
  }
  return file;
}

// For a change: not while a job runs, which has read the file and will write it when it closes up.
ScheduleFile LoadForChange(const OpenedMachine& opened) {
  ScheduleFile file = Load(opened);
  const std::string& user = opened.installation().CurrentUser;
  if (file.IsRunning() || opened.IsServed()) {
    const std::string kind = file.IsRunning() ? KindWord(file.HeaderWord()) : "scheduled";
    throw Failure(Exit::kFailed,
                  "a " + kind + " job of " + user +
                      " is running; change the schedule when it is over. If it was cut off, the "
                      "service clears that when it starts");
  }
  if (file.BrokenLines() > 0) {
    std::cerr << "ondura: warning: " << file.BrokenLines()
              << " line(s) of the schedule file were no records and are "
              << "left out\n";
  }
  return file;
}

void Save(const ScheduleFile& file) {
  if (!file.Save()) {
    throw Failure(
        Exit::kFailed,
        "can't write the schedule file; look at the rights of the user's folder and at the room on its disk");
  }
}

void RefuseUnknownCharacters(const OpenedMachine& opened, const std::string& name) {
  CodePage& code_page = opened.machine().code_page;
  if (code_page.ToUtf8(code_page.FromUtf8(name)) == name) return;
  throw Failure(Exit::kUsage,
                "--name: '" + name + "' has characters that the machine's code page can't hold; use others");
}

// What the schedule that takes the place of another doesn't take over from it.
void WarnOfLoss(const ScheduleRecord& old, const ScheduleRecord& record) {
  std::string lost;
  const auto note = [&](const char* what, const std::string& before, const std::string& after) {
    if (!before.empty() && before != after)
      lost += (lost.empty() ? "" : ", ") + std::string{what} + " '" + before + "'";
  };
  note("repeat", RepeatWord(old), RepeatWord(record));
  note("mail to", old.mailids, record.mailids);
  note("name", old.schname, record.schname);
  if (lost.empty()) return;
  std::cerr << "ondura: warning: the old schedule is gone with its " << lost
            << "; give these again with --replace if you want to keep them\n";
}

void AddSchedule(const Globals& globals, const ScheduleRequest& request) {
  OpenedMachine opened(globals);
  opened.Serve(request.user);
  RefuseUnknownCharacters(opened, request.plan.name);
  const LocalTime now = opened.machine().clock.Now();
  const ScheduleRecord record = RecordOf(request.plan, now);
  const auto lock = opened.LockForChange();
  ScheduleFile file = LoadForChange(opened);
  const auto records = file.Records();
  const auto same = std::ranges::find(records, record.recordno, &ScheduleRecord::recordno);
  if (same != records.end()) {
    if (!request.replace) {
      throw Failure(Exit::kFailed, opened.installation().CurrentUser + " has a " + request.plan.kind +
                                       " schedule already; --replace takes its place");
    }
    WarnOfLoss(*same, record);
    file.Remove(static_cast<std::size_t>(same - records.begin()));
  }
  file.Add(record);
  Save(file);
  std::cout << "Next " << request.plan.kind << " backup of " << opened.installation().CurrentUser << ": "
            << TimeWord(record.sortkey) << " (" << RepeatWord(record) << ")\n";
  if (record.sortkey < SortKeyOf(now)) {
    std::cerr
        << "ondura: warning: that is in the past; the service counts it as missed once it is late, unless "
           "STARTMISSEDSCH is 1\n";
  }
}

void RemoveSchedule(const Globals& globals, const ScheduleRequest& request) {
  if (request.all == (request.number > 0)) {
    throw Failure(Exit::kUsage, "which one? Give its number from 'ondura schedule list', or --all");
  }
  OpenedMachine opened(globals);
  opened.Serve(request.user);
  const auto lock = opened.LockForChange();
  ScheduleFile file = LoadForChange(opened);
  if (request.all) {
    file.Clear();
  } else if (request.number <= file.Records().size()) {
    file.Remove(request.number - 1);
  } else {
    throw Failure(Exit::kFailed, "there is no schedule " + std::to_string(request.number) +
                                     "; 'ondura schedule list " + request.user + "' shows what there is");
  }
  Save(file);
}

nlohmann::ordered_json AsJson(std::size_t number, const ScheduleRecord& record) {
  return {{"number", number},
          {"kind", KindWord(record.recordno)},
          {"name", record.schname},
          {"next", TimeWord(record.sortkey)},
          {"repeat", RepeatWord(record)},
          {"mail", record.mailids.empty() ? std::vector<std::string>{} : Split(record.mailids, ";")},
          {"mail_when", MailWord(record)}};
}

void WarnOfLinesWithoutKey(const ScheduleFile& file, const std::string& user) {
  if (file.LinesWithoutKey() == 0) return;
  std::cerr << "ondura: warning: " << file.LinesWithoutKey() << " line(s) of the schedule file of " << user
            << " have no time, and the service deletes the whole file for that; any 'ondura schedule add' or "
               "'remove' leaves them out\n";
}

void ListSchedules(const Globals& globals, const ScheduleRequest& request) {
  OpenedMachine opened(globals);
  const bool for_all = request.user.empty();
  if (!for_all) opened.Serve(request.user);
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  for (const auto& user : for_all ? opened.Users() : std::vector{opened.installation().CurrentUser}) {
    opened.ServeNew(user);
    const ScheduleFile file = Load(opened);
    WarnOfLinesWithoutKey(file, user);
    const auto records = file.Records();
    if (for_all && !request.as_json) std::cout << user << (records.empty() ? ": no schedule\n" : "\n");
    for (std::size_t i = 0; i < records.size(); ++i) {
      const ScheduleRecord& record = records[i];
      auto json = AsJson(i + 1, record);
      if (for_all) json["user"] = user;
      list.push_back(std::move(json));
      if (request.as_json) continue;
      std::cout << (for_all ? "  " : "") << i + 1 << "  " << TimeWord(record.sortkey) << "  "
                << KindWord(record.recordno) << "  " << RepeatWord(record) << "  mail: " << MailWord(record)
                << "  " << record.schname << "\n";
    }
  }
  if (request.as_json) std::cout << list.dump(2) << "\n";
}

void AddAddCommand(CLI::App& schedule, const Globals& globals) {
  auto& add = *schedule.add_subcommand("add", "Adds a schedule; a user has one for each kind of backup");
  auto request = std::make_shared<ScheduleRequest>();
  SchedulePlan& plan = request->plan;
  add.add_option("USER", request->user, "A user of the machine")->required();
  add.add_option(
         "--at", plan.at,
         "First time, in the machine's local time: HH:MM (the next one), with tomorrow, a weekday or a date "
         "YYYY-MM-DD before it, or now")
      ->required()
      ->type_name("'[DAY] HH:MM'");
  add.add_option("--repeat", plan.repeat, "once, daily, monthly or days such as weekly:mon,wed")
      ->capture_default_str();
  add.add_option("--kind", plan.kind, "files, sql, system-state, exchange or mailbox")->capture_default_str();
  add.add_option("--mail", plan.mail, "Address to notify; repeatable")->allow_extra_args(false);
  add.add_option("--mail-when", plan.mail_when, "never, failure or always")->capture_default_str();
  add.add_option("--name", plan.name, "A name to know the schedule by");
  add.add_flag("--replace", request->replace, "Take the place of the schedule of the same kind");
  add.footer(
      "Example: ondura schedule add ann --at 'mon 22:00' --repeat weekly:mon,thu --mail "
      "ann@example.com");
  add.callback([&globals, request] { AddSchedule(globals, *request); });
}

void AddListCommand(CLI::App& schedule, const Globals& globals) {
  auto& list =
      *schedule.add_subcommand("list", "Lists the schedules of a user, or of all, with their numbers");
  auto request = std::make_shared<ScheduleRequest>();
  list.add_option("USER", request->user, "Only this user");
  list.add_flag("--json", request->as_json, "As a JSON array");
  list.footer("Example: ondura schedule list ann");
  list.callback([&globals, request] { ListSchedules(globals, *request); });
}

void AddRemoveCommand(CLI::App& schedule, const Globals& globals) {
  auto& remove = *schedule.add_subcommand("remove", "Removes a schedule");
  auto request = std::make_shared<ScheduleRequest>();
  remove.add_option("USER", request->user, "A user of the machine")->required();
  remove.add_option("NUMBER", request->number, "Its number in the list")->check(CLI::Range(1, 32767));
  remove.add_flag("--all", request->all, "Remove all of the user's schedules");
  remove.footer("Example: ondura schedule remove ann 1");
  remove.callback([&globals, request] { RemoveSchedule(globals, *request); });
}

}  // namespace

void AddScheduleCommand(CLI::App& app, const Globals& globals) {
  auto& schedule = *app.add_subcommand("schedule", "Says when a user's backups run");
  schedule.require_subcommand(1)->fallthrough();
  schedule.footer("Example: ondura schedule add ann --at 12:30 --repeat daily");
  AddAddCommand(schedule, globals);
  AddListCommand(schedule, globals);
  AddRemoveCommand(schedule, globals);
}

}  // namespace ondura
