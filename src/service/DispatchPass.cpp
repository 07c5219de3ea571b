#include "service/DispatchPass.h"

#include <chrono>

#include "profile/user_list.h"
#include "reporting/Options.h"
#include "schedule/schedule_header.h"
#include "service/StartUp.h"
#include "text/text.h"
#include "util/MachineLock.h"

namespace ondura {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kAfterEngineLook{100};
constexpr milliseconds kAfterJob{5000};
// Key units before its time from which an occurrence is considered.
constexpr double kUnitsAhead = 2;
// kNoOccurrenceKey as a number.
constexpr double kLatestKey = 300012121503;

// A later key never comes due, and neither does one that is not a number.
bool CanComeDue(const std::string& key) {
  const auto number = ParseNumber(key);
  return key.empty() || (number && *number <= kLatestKey);
}

// Holds for as long as it lives.
class Running {
 public:
  explicit Running(bool& flag) : flag_(flag) { flag_ = true; }
  ~Running() { flag_ = false; }
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;

 private:
  bool& flag_;
};

}  // namespace

void DispatchPass::Cont_startschBackup() {
  if (is_running_) return;
  const Running running{is_running_};
  RunPass();
}

JobCode DispatchPass::Cont_SchBackup() {
  if (is_running_) return kJobStopped;
  const Running running{is_running_};
  return context_.driver.Cont_SchBackup();
}

void DispatchPass::RunPass() {
  ServiceState& state = context_.state;
  context_.mail_values.ScheduledTimeText.clear();
  state.UserNameLabel = "Username:";
  RestoreInstallFolder();
  DeleteHardStopMarker();
  LookAtEngine();
  context_.services().programs.SetProcessBelowNormal();
  if (state.DispatchBusy) return;
  state.DispatchBusy = true;
  OpenPass();
  const bool skip_scan = CleanStaleHeader();
  UpkeepWithoutSchedule();
  if (!skip_scan) {
    std::vector<std::string> users;
    if (!ReadUserList(context_.machine(), context_.installation().VirtualPath, users)) {
      context_.trace().Main(" NO UserList.ini file exists.");
      context_.started.LowerOwn();
      state.DispatchBusy = false;
      return;
    }
    ScanUsers(users);
  }
  PublishBest();
  if (!IsNear(best_.key)) {
    // DispatchBusy stays: the next pass clears it when it looks at the engine.
    context_.started.LowerOwn();
    return;
  }
  if (ServeBest() == PassEnd::kAtOnce) return;
  context_.started.LowerOwn();
  state.DispatchBusy = false;
}

void DispatchPass::RestoreInstallFolder() {
  Installation& installation = context_.installation();
  if (!Trim(installation.ExeLocation).empty()) return;
  installation.ExeLocation =
      WithBackslash(context_.store().ReadSharedRegistryValue(profile_keys::kInstallFolder));
}

void DispatchPass::DeleteHardStopMarker() {
  Installation& installation = context_.installation();
  installation.CurrentUser = context_.store().ReadDefaultUser(profile_keys::kDefaultUser);
  const std::string marker = installation.UserFile(installation.ProductName + "HardStop.txt");
  Files& files = context_.machine().files;
  if (files.Exists(marker)) files.Remove(marker, Removal::kPlain);
}

void DispatchPass::LookAtEngine() {
  ServiceState& state = context_.state;
  if (!context_.started.IsRaised()) {
    state.DispatchBusy = false;
    return;
  }
  if (context_.started.JobIsAlive()) {
    state.ScheduleFileBusy = true;
    state.DispatchBusy = true;
  } else {
    state.DispatchBusy = false;
    context_.started.TakeOver();
    TraceDefaultUser(" sUserPath: Default User name10: ");
  }
  context_.machine().clock.Sleep(kAfterEngineLook);
  TraceDefaultUser(" sUserPath: Default User name11: ");
}

void DispatchPass::OpenPass() {
  Installation& installation = context_.installation();
  installation.CurrentUser = context_.store().ReadDefaultUser(profile_keys::kDefaultUser);
  CapTrace(installation.DataFile(kScheduleTraceFile));
  TraceDefaultUser(" sUserPath: Default User name: ");
  Options& trace = context_.trace().plain();
  trace.WriteTraceMain("writing here");
  trace.WriteTraceMain("FileNamePath is " + installation.VirtualPath);
  trace.WriteTraceMain("Exe Location is " + installation.ExeLocation);
  installation.CurrentUser = context_.transfer().Trf_ReadUserNameProfile(profile_keys::kScheduled);
  best_ = {std::string{kNoOccurrenceKey}, installation.CurrentUser, "", false};
  best_of_others_ = best_;
}

// True when the last user's file was left with the word of a job that was cut off: the pass then only
// cleans. A file with another header holds nothing that could be run, and keeps nobody else waiting.
bool DispatchPass::CleanStaleHeader() {
  const std::string path = context_.installation().UserFile(kScheduleFileName);
  const auto word = ReadHeaderWord(context_.machine().files, path);
  if (!word || *word == kIdleWord) return false;
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
  // A record that stays in its file as it is keeps the earliest key for ever. All others go first.
  if (best_.stands && IsNear(best_of_others_.key)) best_ = best_of_others_;
}

void DispatchPass::OfferUser(const std::string& user) {
  context_.trace().plain().WriteTraceMain("Processing user:  " + user);
  CapTrace(context_.installation().UserFile(kScheduleTraceFile));
  if (user.empty()) return;
  const std::string disabled = context_.transfer().Trf_ReadUserProfile(profile_keys::kScheduleDisable);
  if (!disabled.empty() && disabled != "FALSE") {
    context_.trace().User("  Scheduled Disabled");
    UpkeepWithTrace();
    return;
  }
  DBaction& schedule = context_.schedule_file();
  schedule.ScheduleFilePath = context_.installation().UserFile(kScheduleFileName);
  schedule.DB_ReadSchData("");
  for (std::size_t i = 0; i < static_cast<std::size_t>(schedule.RecordCount); ++i) {
    OfferRecord(user, schedule.ScheduleTable.at(i));
  }
}

// A tie keeps the earlier user of the list.
void DispatchPass::OfferRecord(const std::string& user, const ScheduleRecord& record) {
  const std::string& key = record.sortkey;
  const Standing standing = context_.services().scheduler.StandingOf(record);
  if (!CanComeDue(key) || standing == Standing::kNotAgain) return;
  const Best offer{key, user, record.nexttime, standing == Standing::kAfterOthers};
  if (key < best_.key) best_ = offer;
  if (key < best_of_others_.key && !offer.stands) best_of_others_ = offer;
}

void DispatchPass::PublishBest() {
  context_.installation().CurrentUser = best_.user;
  context_.trace().Main(" Backup in progress for:  " + best_.user);
  const std::string standby = context_.store().ReadSharedRegistryValue(profile_keys::kStandbyBackup);
  if (!standby.empty() && standby != "1") return;
  context_.trace().Main("  Wakeup time: " + best_.time);
  context_.transfer().Trf_WriteUserNameRegistryProfile(profile_keys::kNextTransfer, best_.time);
}

bool DispatchPass::IsNear(const std::string& key) {
  const std::string now = context_.services().scheduler.Sch_SortBuildDate(
      FormatDate(kShortHourPicture, context_.machine().clock.Now()));
  if (now >= key) return true;
  const auto ahead = ParseNumber(key).value_or(0) - ParseNumber(now).value_or(0);
  return ahead <= kUnitsAhead;
}

DispatchPass::PassEnd DispatchPass::ServeBest() {
  Scheduler& scheduler = context_.services().scheduler;
  context_.state.RunJob = true;
  const std::string path = context_.installation().UserFile(kScheduleFileName);
  context_.schedule_file().ScheduleFilePath = path;
  context_.backup_set.BackupSetFilePath = context_.installation().UserFile(kBackupSetFileName);
  scheduler.DateFormatText = context_.services().facts.GetLocaleString(kLocaleShortDate);
  scheduler.TimeFormatText = context_.services().facts.GetLocaleString(kLocaleTimeFormat);
  const auto key = LoadRecord(path);
  return key ? ServeLoaded(*key) : PassEnd::kNormal;
}

// Under the lock, as a missed record moves on within the table that is read here.
std::optional<std::string> DispatchPass::LoadRecord(const std::string& path) {
  ServiceState& state = context_.state;
  const MachineLock lock(context_.machine().mutexes, MachineLock::kPatienceOfAHost);
  const auto word = ReadHeaderWord(context_.machine().files, path);
  if (!word) return std::nullopt;
  state.ScheduleFileBusy = Trim(*word) != kIdleWord;
  state.LoadResult = context_.services().scheduler.Sch_Load_ScheduleData();
  const ScheduleRecord* selected = context_.schedule_file().Selected();
  const std::string key = selected ? selected->sortkey : "";
  if (state.LoadResult == kMissed) missed_.Decide();
  return key;
}

DispatchPass::PassEnd DispatchPass::ServeLoaded(const std::string& key) {
  ServiceState& state = context_.state;
  if (!state.RunJob) {
    missed_.Report();
    NoteIfItStands(key);
    return PassEnd::kNormal;
  }
  if (state.LoadResult != kDue || state.ScheduleFileBusy) {
    context_.trace().User("  Waiting for next transfer time.", kShortHourPicture);
    return PassEnd::kNormal;
  }
  if (bracket_.Run() == JobBracket::End::kScheduleGone) return PassEnd::kAtOnce;
  if (state.RunJob) NoteIfItStands(key);
  context_.machine().clock.Sleep(kAfterJob);
  return PassEnd::kNormal;
}

void DispatchPass::NoteIfItStands(const std::string& key) {
  const ScheduleRecord* selected = context_.schedule_file().Selected();
  if (!selected || selected->sortkey != key) return;
  context_.services().scheduler.NoteStanding(*selected, Standing::kAfterOthers);
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
