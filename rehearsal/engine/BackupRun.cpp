#include "rehearsal/engine/BackupRun.h"

#include <algorithm>

#include "engine/engine_files.h"
#include "rehearsal/engine/CompareList.h"
#include "rehearsal/engine/selection_walk.h"
#include "text/text.h"

namespace ondura::rehearsal {

namespace {

using namespace std::chrono_literals;

// The job gives an engine that is to stop a few seconds.
constexpr std::chrono::milliseconds kPaceStep{500};

constexpr int kDefaultQuotaMegabytes = 10 * 1024;

bool UsesDatabase(Client& client) {
  const std::string method{Trim(client.transfer().Trf_ReadUserNameDBProfile(profile_keys::kLocalDatabase))};
  return method.empty() || method == "1";
}

TransferFigures TotalOf(const std::vector<Candidate>& files) {
  TransferFigures total;
  for (const Candidate& file : files) {
    ++total.files;
    total.bytes += file.size_bytes;
  }
  return total;
}

}  // namespace

std::uint64_t DefaultQuotaBytes(Client& client) {
  const int megabytes = client.DeploymentNumber("QuotaMegabytes", kDefaultQuotaMegabytes);
  return static_cast<std::uint64_t>(megabytes > 0 ? megabytes : kDefaultQuotaMegabytes) * 1024 * 1024;
}

BackupRun::BackupRun(Client& client, Vault& vault)
    : client_(client),
      vault_(vault),
      database_(client),
      stage_data_(client),
      stop_requests_(client),
      progress_(client),
      report_(client),
      used_bytes_(vault.UsedBytes()),
      max_bytes_(vault.MaxBytes(DefaultQuotaBytes(client))),
      pace_(client.DeploymentNumber("MillisecondsPerFile", 0)) {}

EngineResult BackupRun::Run() {
  progress_.Begin({});
  if (UsesDatabase(client_)) {
    RunByDatabase();
  } else {
    RunByCompareList();
  }
  WriteNames(engine_files::kSent, changed_paths_);
  WriteNames(engine_files::kInSync, in_sync_paths_);
  const EngineResult result = ResultOfRun();
  report_.Close(result, figures_);
  progress_.End();
  return result;
}

void BackupRun::RunByDatabase() {
  // The job clears away the files of the last run right after it has started the engine.
  client_.machine().clock.Sleep(1s);
  known_ = database_.LoadOrBuild(vault_);
  const Selection::Outcome outcome = Selection(client_).Walk([this] { return IsOver(); });
  met_exclusion_ = outcome.met_exclusion;
  for (const std::string& path : outcome.missing) {
    report_.Failed(path);
    ++figures_.failed;
  }
  for (const std::string& path : outcome.off_drive) {
    report_.Say(path + "  is left out: it is a link that leads off its drive");
  }
  Transfer(outcome.files);
  Transfer(StageFilesLeft());
  database_.Save(known_);
}

void BackupRun::RunByCompareList() {
  known_ = vault_.States();
  CompareList list(client_);
  bool more = true;
  while (more && !IsOver()) {
    const auto part = list.NextPart([this] { return IsOver(); });
    if (!part) {
      gave_up_ = !IsOver();
      return;
    }
    Transfer(part->files);
    more = !part->is_last;
  }
  Transfer(StageFilesLeft());
  met_exclusion_ = client_.transfer().Trf_ReadUserNameProfileReg(profile_keys::kExcluded) == "1";
}

std::vector<Candidate> BackupRun::StageFilesLeft() {
  std::vector<Candidate> files = stage_data_.Files();
  std::erase_if(files, [&](const Candidate& file) { return places_.contains(ToLower(file.path)); });
  return files;
}

void BackupRun::Transfer(const std::vector<Candidate>& files) {
  const std::vector<Candidate> changed = PickChanged(files);
  progress_.Begin(TotalOf(changed));
  TransferFigures done;
  for (const Candidate& file : changed) {
    if (IsOver()) break;
    progress_.Show(file.path, done);
    if (!KeepPace()) break;
    Send(file);
    ++done.files;
    done.bytes += file.size_bytes;
  }
  progress_.Finish(done);
}

bool BackupRun::KeepPace() {
  for (auto left = pace_; left > 0ms && !IsOver(); left -= kPaceStep) {
    client_.machine().clock.Sleep(std::min(left, kPaceStep));
  }
  return !IsOver();
}

std::vector<Candidate> BackupRun::PickChanged(const std::vector<Candidate>& files) {
  std::vector<Candidate> changed;
  for (const Candidate& file : files) {
    ++figures_.considered;
    if (SharesPlace(file.path)) {
      report_.Failed(file.path + "  (another file has this name in another letter case)");
      ++figures_.failed;
      continue;
    }
    const auto known = known_.Find(file.path);
    if (known && file.Matches(*known)) {
      ++figures_.in_sync;
      in_sync_paths_.push_back(file.path);
    } else {
      changed_paths_.push_back(file.path);
      changed.push_back(file);
    }
  }
  return changed;
}

bool BackupRun::SharesPlace(const std::string& path) {
  const auto [first, is_new] = places_.try_emplace(ToLower(path), path);
  if (is_new || first->second == path) return false;
  // One file may be chosen twice, in different letter case.
  Drives& drives = client_.machine().drives;
  return drives.LongPath(first->second) != drives.LongPath(path);
}

void BackupRun::Send(const Candidate& file) {
  if (!FitsQuota(file)) {
    quota_is_used_up_ = true;
    report_.Say("The allocated quota is used up.");
    return;
  }
  if (!vault_.Store(file.path)) {
    report_.Failed(file.path);
    ++figures_.failed;
    return;
  }
  report_.Sent(file.path, file.size_bytes);
  const auto before = known_.Find(file.path);
  used_bytes_ += file.size_bytes - (before ? before->size_bytes : 0);
  known_.Put(file.path, {file.size_bytes, file.modified});
  ++figures_.sent;
  figures_.sent_bytes += file.size_bytes;
}

bool BackupRun::FitsQuota(const Candidate& file) const {
  const auto before = known_.Find(file.path);
  return used_bytes_ + file.size_bytes <= max_bytes_ + (before ? before->size_bytes : 0);
}

bool BackupRun::IsOver() { return quota_is_used_up_ || stop_requests_.Check() != StopRequest::kNone; }

EngineResult BackupRun::ResultOfRun() {
  switch (stop_requests_.Check()) {
    case StopRequest::kCancel:
      return engine_results::kCancelled;
    case StopRequest::kHardStop:
      return engine_results::kCancelledByServer;
    case StopRequest::kNone:
      break;
  }
  if (quota_is_used_up_) return engine_results::kQuotaUsedUp;
  if (gave_up_) return engine_results::kEndedAbnormally;
  if (figures_.failed > 0) return engine_results::kSomeFailed;
  if (figures_.sent > 0) return engine_results::kDone;
  if (figures_.considered > 0) return engine_results::kUpToDate;
  return met_exclusion_ ? engine_results::kAllExcluded : engine_results::kNothingNew;
}

void BackupRun::WriteNames(std::string_view name, const std::vector<std::string>& paths) {
  std::string text;
  for (const std::string& path : paths) text.append(path).append(kLineEnd);
  client_.text_files().Write(client_.installation().UserFile(name), text, Encoding::kUtf16);
}

}  // namespace ondura::rehearsal
