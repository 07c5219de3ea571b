#include "engines/restic/ResticStore.h"

#include <algorithm>
#include <utility>

#include "engine/engine_files.h"
#include "engines/common/database_selection.h"
#include "engines/restic/ResticBackup.h"
#include "engines/restic/StoreCare.h"
#include "engines/restic/restic_errors.h"
#include "text/text.h"
#include "util/TextFiles.h"

namespace ondura::engines {

namespace {

using namespace std::chrono_literals;
using namespace engine_results;

// A store that does not answer by then is not reached.
constexpr auto kEnterLimit = 20s;
constexpr auto kLookLimit = 120s;

constexpr std::string_view kParentLead = "Snapshot=";

// What is reported for a store without a limit: the keys of the quota have no word for that.
constexpr std::uint64_t kNoLimit = std::uint64_t{1} << 50;

std::string DatabasePath(const Client& client) {
  return client.installation().UserFile(engine_files::kDatabaseFolder) + "\\" +
         std::string{engine_files::kDatabase};
}

// A mutex that this user's engines on this machine share, held until the end of its scope.
class UserMutex {
 public:
  UserMutex(NamedMutexes& mutexes, const std::string& name, std::chrono::milliseconds limit)
      : mutexes_(mutexes), mutex_(mutexes.Create(name)), held_(mutexes.Wait(mutex_, limit)) {}
  ~UserMutex() {
    if (held_) mutexes_.Release(mutex_);
    mutexes_.Close(mutex_);
  }
  UserMutex(const UserMutex&) = delete;
  UserMutex& operator=(const UserMutex&) = delete;

  [[nodiscard]] bool held() const { return held_; }

 private:
  NamedMutexes& mutexes_;
  MutexHandle mutex_;
  bool held_;
};

}  // namespace

ResticStore::ResticStore(Client& client)
    : client_(client),
      work_folder_(client.installation().UserFile("Engine")),
      record_(client, work_folder_),
      settings_(ReadStoreSettings(client, client.ReadAccount())) {}

EngineResult ResticStore::Enter(const Account& account) {
  const EngineResult prepared = Prepare(account);
  return prepared == kDone ? Meet() : prepared;
}

EngineResult ResticStore::Resume(const Account& account) {
  const EngineResult prepared = Prepare(account);
  if (prepared != kDone) return prepared;
  resumes_ = !record_.Id().empty() &&
             record_.WasMetLately(WithoutLogins(settings_.repository), client_.machine().clock.Now());
  return resumes_ ? kDone : Meet();
}

EngineResult ResticStore::Prepare(const Account& account) {
  resumes_ = false;
  reason_ = settings_.error;
  if (!reason_.empty()) return kNoPortInformation;
  if (account.name.empty() || account.password.empty()) {
    reason_ = "the profile has no account name or no password; set them with 'ondura user'";
    return kWrongPassword;
  }
  view_ = MakeSystemView(client_.machine(), work_folder_);
  if (!view_) {
    reason_ = "the folder " + work_folder_ + " can't be made: is the disk full?";
    return kEndedAbnormally;
  }
  program_ = std::make_unique<ResticProgram>(client_, settings_, account, *view_, work_folder_);
  return kDone;
}

// Looking takes no lock: somebody else's may stand in the way of a transfer, but hides nothing.
EngineResult ResticStore::Meet() {
  resumes_ = false;
  const ResticEnd end = program_->Do({.arguments = {"cat", "config", "--no-lock"}, .limit = kEnterLimit});
  if (end.IsDone()) return TakeId(ParseRepositoryId(end.output));
  const bool is_first = record_.Id().empty() && end.how == ResticEnd::How::kEnded;
  if (is_first && SaysNoRepository(end.words, end.exit_code)) return MakeRepository();
  return Fail(end, ResultOf(end));
}

// A job may have given up an engine that is still at it, and begun another. Two that make one repository at
// the same time leave a key that does not fit.
EngineResult ResticStore::MakeRepository() {
  const UserMutex making(client_.machine().mutexes, "OnduraMake" + client_.installation().CurrentUser,
                         kLookLimit);
  if (!making.held()) return kCannotConnect;
  if (!record_.Id().empty()) return Meet();
  const ResticEnd made = program_->Do({.arguments = {"init"}, .limit = kLookLimit});
  if (!made.IsDone()) return Fail(made, ResultOf(made));
  const ResticEnd end = program_->Do({.arguments = {"cat", "config", "--no-lock"}, .limit = kEnterLimit});
  return end.IsDone() ? TakeId(ParseRepositoryId(end.output)) : Fail(end, ResultOf(end));
}

EngineResult ResticStore::TakeId(std::string_view id) {
  const std::string known = record_.Id();
  if (id.empty() || (!known.empty() && known != id)) {
    reason_ =
        "the store holds another repository than the one that this user's backups are in; if that is meant, "
        "say so with 'ondura store USER --accept'";
    return kCannotConnect;
  }
  if (known.empty() && !record_.RememberId(id)) return kEndedAbnormally;
  record_.NoteMeeting(WithoutLogins(settings_.repository), client_.machine().clock.Now());
  return kDone;
}

EngineResult ResticStore::ResultOf(const ResticEnd& end) const {
  switch (end.how) {
    case ResticEnd::How::kNotStarted:
      return kDamagedInstallation;
    case ResticEnd::How::kTimedOut:
      return kCannotConnect;
    default:
      return ResultOfWords(end.words, end.exit_code, ResticPhase::kEntering, view_->HostName());
  }
}

EngineResult ResticStore::Fail(const ResticEnd& end, EngineResult result) {
  if (end.how == ResticEnd::How::kNotStarted) {
    reason_ = "restic could not be started: install it, or add its folder to the search path";
  } else if (end.how == ResticEnd::How::kTimedOut) {
    reason_ = "the store does not answer";
  } else {
    reason_ = Trim(end.words);
  }
  failure_ = result;
  return result;
}

bool ResticStore::Check(const ResticEnd& end) {
  reason_.clear();
  if (!end.IsDone()) Fail(end, {});
  return end.IsDone();
}

bool ResticStore::ChangePassword(const Account& account, const std::string& old) {
  Account before = account;
  (before.encryption_password.empty() ? before.password : before.encryption_password) = old;
  const std::string& next =
      account.encryption_password.empty() ? account.password : account.encryption_password;
  if (Enter(before) != kDone) return false;
  return Check(program_->Do({.arguments = {"key", "passwd"},
                             .limit = kLookLimit,
                             .secrets = {{.variable = {}, .text = next, .option = "--new-password-file"}}}));
}

std::vector<std::string> ResticStore::OwnMarks() const {
  return {"--host", client_.machine().system.ComputerName(), "--tag",
          "user:" + client_.installation().CurrentUser};
}

std::optional<StoreSpace> ResticStore::Usage() {
  const std::uint64_t limit = settings_.max_bytes > 0 ? settings_.max_bytes : kNoLimit;
  const LocalTime now = client_.machine().clock.Now();
  if (const auto known = record_.IsRunOpen() ? std::nullopt : record_.Used(now))
    return StoreSpace{*known, limit};
  const ResticEnd end =
      program_->Do({.arguments = {"stats", "--json", "--mode", "raw-data"}, .limit = kLookLimit});
  const auto used = end.IsDone() ? ParseTotalSize(end.output) : std::nullopt;
  if (!used) {
    Fail(end, end.IsDone() ? kCannotConnect : ResultOf(end));
    return std::nullopt;
  }
  record_.NoteUsed(*used, now);
  return StoreSpace{*used, limit};
}

std::optional<std::vector<ResticSnapshot>> ResticStore::Snapshots() {
  std::vector<std::string> arguments{"snapshots", "--json", "--no-lock"};
  const auto marks = OwnMarks();
  arguments.insert(arguments.end(), marks.begin(), marks.end());
  const ResticEnd end = program_->Do({.arguments = std::move(arguments), .limit = kLookLimit});
  auto snapshots = end.IsDone() ? ParseSnapshots(end.output) : std::nullopt;
  if (!snapshots) Fail(end, end.IsDone() ? kCannotConnect : ResultOf(end));
  return snapshots;
}

// A person may ask for this one to try a password, so it asks the store itself.
EngineResult ResticStore::ServerList() {
  record_.NoteNewest("");
  return Newest();
}

// The repository knows the state of every file that is in it: all that the database says is which snapshot to
// compare with.
EngineResult ResticStore::Newest() {
  std::string id = resumes_ ? record_.Newest() : "";
  if (id.empty()) {
    const auto snapshots = Snapshots();
    if (!snapshots) return failure_;
    if (!snapshots->empty()) id = snapshots->back().id;
    record_.NoteNewest(id);
  }
  client_.machine().folders.Make(client_.installation().UserFile(engine_files::kDatabaseFolder));
  NoteDatabaseSelection(client_);
  return WriteParent(id) ? kDone : kEndedAbnormally;
}

bool ResticStore::WriteParent(std::string_view id) {
  return client_.text_files().Write(DatabasePath(client_),
                                    std::string{kParentLead}.append(id).append(kLineEnd), Encoding::kUtf16);
}

std::optional<std::string> ResticStore::NotedParent() const {
  const auto line = client_.text_files().ReadFirstLine(DatabasePath(client_), Encoding::kUtf16);
  if (!line || !line->starts_with(kParentLead)) return std::nullopt;
  return line->substr(kParentLead.size());
}

EngineResult ResticStore::Transfer(const TransferRequest& request, TransferJournal& journal,
                                   StopRequests& stop) {
  // Two transfers of one account on this machine would wait for each other's lock in the store.
  const UserMutex lock(client_.machine().mutexes, "OnduraTransfer" + client_.installation().CurrentUser, 0ms);
  if (!lock.held()) {
    journal.Say("Another transfer of this user is running on this machine.");
    return kLocked;
  }
  // A snapshot to compare with shows by itself that the repository is the right one. A server may have fallen
  // silent since the last command, and a transfer has no limit of time.
  const auto parent = NotedParent();
  const bool is_on_server = !StoreKind(settings_.repository).empty();
  if (resumes_ && (is_on_server || parent.value_or("").empty())) {
    if (const EngineResult met = Meet(); met != kDone) return met;
  }
  if (!parent) Newest();
  StoreCare care(client_, *this, journal, stop);
  if (record_.IsRunOpen()) care.MendAfterBreak();
  std::optional<std::uint64_t> space_left;
  if (settings_.max_bytes > 0) {
    const std::uint64_t used = Usage().value_or(StoreSpace{}).used_bytes;
    space_left = settings_.max_bytes - std::min(used, settings_.max_bytes);
  }
  record_.SetRunOpen(true);
  ResticBackup backup(client_, *program_, *view_, work_folder_, journal, stop);
  EngineResult result = backup.Run(request, OwnMarks(), NotedParent().value_or(""), space_left);
  if (backup.ParentIsGone()) {
    if (const EngineResult met = Meet(); met != kDone) {
      record_.SetRunOpen(false);
      return met;
    }
    if (Newest() == kDone) result = backup.Run(request, OwnMarks(), NotedParent().value_or(""), space_left);
  }
  if (result != kNothingNew) record_.ForgetUsed();
  record_.SetFull(result == kQuotaUsedUp);
  if (!backup.HasBegun() || !backup.snapshot_id().empty()) record_.SetRunOpen(false);
  if (backup.snapshot_id().empty()) {
    reason_ = backup.words();
    return result;
  }
  WriteParent(backup.snapshot_id());
  record_.NoteNewest(backup.snapshot_id());
  journal.Say("Snapshot " + backup.snapshot_id() + " holds this state.");
  if (result == kDone || result == kNothingNew) care.AfterGoodRun();
  return result;
}

std::vector<std::string> ResticStore::OwnFolders() const {
  std::vector<std::string> folders{work_folder_ + "\\"};
  std::string store = settings_.store_folder;
  if (store.empty() && view_) store = view_->MachinePathOfFolder(settings_.repository);
  if (!store.empty()) folders.push_back(WithBackslash(store));
  return folders;
}

}  // namespace ondura::engines
