#include "service/DispatchPass.h"

#include <chrono>

#include "profile/user_list.h"
#include "schedule/schedule_header.h"
#include "service/StartUp.h"
#include "util/text.h"

namespace ondura {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kAfterEngineLook{100};
constexpr milliseconds kAfterJob{5000};
// Key units before its time from which an occurrence is considered.
constexpr double kUnitsAhead = 2;
// A job traces at least this often between two runs of the engine.
constexpr std::chrono::seconds kSignOfLife{120};
constexpr std::string_view kTraceFile = "ScheduleTraceFile.txt";

}  // namespace

void DispatchPass::Cont_startschBackup() {
  ServiceState& state = context_.state;
  state.MailScheduledTime.clear();
  state.UserNameLabel = "Username:";
  RestoreInstallFolder();
  DeleteHardStopMarker();
  LookAtEngine();
  context_.services().helpers.SetProcessBelowNormal();
  if (state.DispatchBusy) return;
  state.DispatchBusy = true;
  OpenPass();
  const bool skip_scan = CleanStaleHeader();
  UpkeepWithoutSchedule();
  if (!skip_scan) {
    std::vector<std::string> users;
    if (!ReadUserList(context_.machine(), context_.installation().VirtualPath, users)) {
      context_.trace().Main(" NO UserList.ini file exists.");
      context_.WriteStarted("0");
      state.DispatchBusy = false;
      return;
    }
    ScanUsers(users);
  }
  PublishBest();
  if (!BestIsNear()) {
    // DispatchBusy stays: the next pass clears it when it looks at the engine.
    context_.WriteStarted("0");
    return;
  }
  if (ServeBest() == PassEnd::kAtOnce) return;
  context_.WriteStarted("0");
  state.DispatchBusy = false;
}

void DispatchPass::RestoreInstallFolder() {
  Installation& installation = context_.installation();
  if (!Trim(installation.ExeLocation).empty()) return;
  installation.ExeLocation = WithBackslash(context_.store().ReadSharedRegistryValue("OnduraE client"));
}

void DispatchPass::DeleteHardStopMarker() {
  Installation& installation = context_.installation();
  installation.CurrentUser = context_.store().ReadDefaultUser("Default User name");
  const std::string marker = installation.UserFile(installation.ProductName + "HardStop.txt");
  Files& files = context_.machine().files;
  if (files.Exists(marker)) files.Remove(marker, Removal::kPlain);
}

void DispatchPass::LookAtEngine() {
  ServiceState& state = context_.state;
  if (context_.transfer().Trf_ReadUserNameProfile("Started") != "1") {
    state.DispatchBusy = false;
    return;
  }
  if (context_.services().helpers.IsProcessRunningByModule(context_.installation().ClientExe, Kill::kNo) ||
      OtherHostIsBetweenEngineRuns()) {
    state.ScheduleFileBusy = true;
    state.DispatchBusy = true;
  } else {
    state.DispatchBusy = false;
    TraceDefaultUser(" sUserPath: Default User name10: ");
  }
  context_.machine().clock.Sleep(kAfterEngineLook);
  TraceDefaultUser(" sUserPath: Default User name11: ");
}

// A job of the other host has moments without an engine, in its waits and between two commands. What tells
// it from a job that was cut off is the fresh trace of its user.
bool DispatchPass::OtherHostIsBetweenEngineRuns() {
  if (context_.state.started_here) return false;
  const std::string user = context_.transfer().Trf_ReadUserNameProfile("Scheduled");
  if (user.empty()) return false;
  const std::string trace_file = context_.installation().FolderOf(user) + "\\" + std::string{kTraceFile};
  const auto written = context_.machine().files.Modified(trace_file);
  const LocalTime now = context_.machine().clock.Now();
  return written && *written <= now && now - *written <= kSignOfLife;
}

void DispatchPass::OpenPass() {
  Installation& installation = context_.installation();
  installation.CurrentUser = context_.store().ReadDefaultUser("Default User name");
  CapTrace(installation.DataFile(kTraceFile));
  TraceDefaultUser(" sUserPath: Default User name: ");
  Options& trace = context_.trace().plain();
  trace.WriteTraceMain("writing here");
  trace.WriteTraceMain("FileNamePath is " + installation.VirtualPath);
  trace.WriteTraceMain("Exe Location is " + installation.ExeLocation);
  installation.CurrentUser = context_.transfer().Trf_ReadUserNameProfile("Scheduled");
  best_ = {std::string{kNoOccurrenceKey}, installation.CurrentUser, ""};
}

// True when the last user's file was left with the word of a job that was cut off: the pass then only
// cleans. A file with another header holds nothing that could be run, and keeps nobody else waiting.
bool DispatchPass::CleanStaleHeader() {
  const std::string path = context_.installation().UserFile(kScheduleFileName);
  const auto word = ReadHeaderWord(context_.machine().files, path);
  if (!word || *word == "0") return false;
  return ResetStaleHeader(context_.machine().files, path);
}

void DispatchPass::UpkeepWithoutSchedule() {
  if (!context_.machine().files.Exists(context_.installation().UserFile(kScheduleFileName))) {
    UpkeepWithTrace();
  }
}

void DispatchPass::UpkeepWithTrace() {
  context_.trace().Main(" Calling VaccumDB.");
  context_.services().local_database.VaccumDB();
}

void DispatchPass::ScanUsers(const std::vector<std::string>& users) {
  // One name without the closing ";" is not walked.
  if (users.size() < 2) return;
  for (const std::string& user : users) {
    context_.installation().CurrentUser = user;
    if (context_.machine().folders.Exists(context_.installation().UserFolder())) OfferUser(user);
  }
}

void DispatchPass::OfferUser(const std::string& user) {
  context_.trace().plain().WriteTraceMain("Processing user:  " + user);
  CapTrace(context_.installation().UserFile(kTraceFile));
  if (user.empty()) return;
  const std::string disabled = context_.transfer().Trf_ReadUserProfile("ScheduleDisable");
  if (!disabled.empty() && disabled != "FALSE") {
    context_.trace().User("  Scheduled Disabled");
    UpkeepWithTrace();
    return;
  }
  DBaction& schedule = context_.schedule_file();
  schedule.ScheduleFilePath = context_.installation().UserFile(kScheduleFileName);
  schedule.DB_ReadSchData("");
  for (std::size_t i = 0; i < static_cast<std::size_t>(schedule.RecordCount); ++i) {
    const ScheduleRecord& record = schedule.ScheduleTable.at(i);
    // A key that is no number never comes due, and would keep everybody else waiting.
    const bool can_come_due = record.sortkey.empty() || ParseNumber(record.sortkey).has_value();
    // A tie keeps the earlier user of the list.
    if (can_come_due && record.sortkey < best_.key) best_ = {record.sortkey, user, record.nexttime};
  }
}

void DispatchPass::PublishBest() {
  context_.installation().CurrentUser = best_.user;
  context_.trace().Main(" Backup in progress for:  " + best_.user);
  const std::string standby = context_.store().ReadSharedRegistryValue("StandbyBackup");
  if (!standby.empty() && standby != "1") return;
  context_.trace().Main("  Wakeup time: " + best_.time);
  context_.transfer().Trf_WriteUserNameRegistryProfile("NextTransfer", best_.time);
}

bool DispatchPass::BestIsNear() {
  const std::string now = context_.services().scheduler.Sch_SortBuildDate(
      FormatDate(kShortHourPicture, context_.machine().clock.Now()));
  if (now >= best_.key) return true;
  const auto ahead = ParseNumber(best_.key).value_or(0) - ParseNumber(now).value_or(0);
  return ahead <= kUnitsAhead;
}

DispatchPass::PassEnd DispatchPass::ServeBest() {
  ServiceState& state = context_.state;
  Scheduler& scheduler = context_.services().scheduler;
  state.RunJob = true;
  const std::string path = context_.installation().UserFile(kScheduleFileName);
  context_.schedule_file().ScheduleFilePath = path;
  context_.backup_set.BackupSetFilePath = context_.installation().UserFile(kBackupSetFileName);
  scheduler.DateFormatText = context_.services().helpers.GetLocaleString(kLocaleShortDate);
  scheduler.TimeFormatText = context_.services().helpers.GetLocaleString(kLocaleTimeFormat);
  const auto word = ReadHeaderWord(context_.machine().files, path);
  if (!word) return PassEnd::kNormal;
  state.ScheduleFileBusy = Trim(*word) != "0";
  state.LoadResult = scheduler.Sch_Load_ScheduleData();
  return ServeLoaded();
}

DispatchPass::PassEnd DispatchPass::ServeLoaded() {
  ServiceState& state = context_.state;
  if (state.LoadResult == kMissed) missed_.Decide();
  if (!state.RunJob) {
    missed_.Report();
    return PassEnd::kNormal;
  }
  if (state.LoadResult != kDue || state.ScheduleFileBusy) {
    context_.trace().User("  Waiting for next transfer time.", kShortHourPicture);
    return PassEnd::kNormal;
  }
  if (bracket_.Run() == JobBracket::End::kScheduleGone) return PassEnd::kAtOnce;
  context_.machine().clock.Sleep(kAfterJob);
  return PassEnd::kNormal;
}

void DispatchPass::CapTrace(const std::string& path) {
  Files& files = context_.machine().files;
  if (files.Size(path).value_or(0) <= kTraceCapBytes) return;
  files.Remove(path, Removal::kPlain);
  TextFiles(files, context_.machine().code_page).Write(path, "", Encoding::kUtf16);
}

void DispatchPass::TraceDefaultUser(std::string_view label) {
  context_.trace().Main(std::string{label} + context_.installation().CurrentUser);
}

}  // namespace ondura
