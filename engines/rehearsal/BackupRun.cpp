#include "engines/rehearsal/BackupRun.h"

#include <algorithm>

#include "text/text.h"

namespace ondura::engines {

namespace {

using namespace std::chrono_literals;

// The job gives an engine that is to stop a few seconds.
constexpr std::chrono::milliseconds kPaceStep{500};

constexpr int kDefaultQuotaMegabytes = 10 * 1024;

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

BackupRun::BackupRun(Client& client, Vault& vault, const TransferRequest& request, TransferJournal& journal,
                     StopRequests& stop)
    : client_(client),
      vault_(vault),
      request_(request),
      journal_(journal),
      stop_(stop),
      database_(client),
      used_bytes_(vault.UsedBytes()),
      max_bytes_(vault.MaxBytes(DefaultQuotaBytes(client))),
      pace_(client.DeploymentNumber("MillisecondsPerFile", 0)) {}

EngineResult BackupRun::Run() {
  if (request_.compare_list == nullptr) {
    RunByDatabase();
  } else {
    RunByCompareList();
  }
  return ResultOfRun();
}

void BackupRun::RunByDatabase() {
  // The job clears away the files of the last run right after it has started the engine.
  client_.machine().clock.Sleep(1s);
  known_ = database_.LoadOrBuild(vault_);
  const Selection::Outcome outcome = request_.selection.Walk([this] { return IsOver(); });
  if (outcome.met_exclusion) journal_.MeetExclusion();
  for (const std::string& path : outcome.missing) journal_.Failed(path);
  for (const std::string& path : outcome.off_drive) {
    journal_.Say(path + "  is left out: it is a link that leads off its drive");
  }
  Transfer(outcome.files);
  Transfer(StageFilesLeft());
  database_.Save(known_);
}

void BackupRun::RunByCompareList() {
  known_ = vault_.States();
  bool more = true;
  while (more && !IsOver()) {
    const auto part = request_.compare_list->NextPart([this] { return IsOver(); });
    if (!part) {
      gave_up_ = !IsOver();
      return;
    }
    Transfer(part->files);
    more = !part->is_last;
  }
  Transfer(StageFilesLeft());
  if (client_.transfer().Trf_ReadUserNameProfileReg(profile_keys::kExcluded) == "1") journal_.MeetExclusion();
}

std::vector<Candidate> BackupRun::StageFilesLeft() {
  std::vector<Candidate> files = request_.stage_data.Files();
  std::erase_if(files, [&](const Candidate& file) { return places_.contains(ToLower(file.path)); });
  return files;
}

void BackupRun::Transfer(const std::vector<Candidate>& files) {
  const std::vector<Candidate> changed = PickChanged(files);
  journal_.Expect(TotalOf(changed));
  TransferFigures done;
  for (const Candidate& file : changed) {
    if (IsOver()) break;
    journal_.Show(file.path, done);
    if (!KeepPace()) break;
    Send(file);
    ++done.files;
    done.bytes += file.size_bytes;
  }
  journal_.Finish(done);
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
    journal_.Consider();
    if (SharesPlace(file.path)) {
      journal_.Failed(file.path, "another file has this name in another letter case");
      continue;
    }
    const auto known = known_.Find(file.path);
    if (known && file.Matches(*known)) {
      journal_.InSync(file.path);
    } else {
      journal_.Changed(file.path);
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
    journal_.Say("The allocated quota is used up.");
    return;
  }
  if (!vault_.Store(file.path)) {
    journal_.Failed(file.path);
    return;
  }
  journal_.Sent(file.path, file.size_bytes);
  const auto before = known_.Find(file.path);
  used_bytes_ += file.size_bytes - (before ? before->size_bytes : 0);
  known_.Put(file.path, {file.size_bytes, file.modified});
}

bool BackupRun::FitsQuota(const Candidate& file) const {
  const auto before = known_.Find(file.path);
  return used_bytes_ + file.size_bytes <= max_bytes_ + (before ? before->size_bytes : 0);
}

bool BackupRun::IsOver() { return quota_is_used_up_ || stop_.Check() != StopRequest::kNone; }

EngineResult BackupRun::ResultOfRun() {
  switch (stop_.Check()) {
    case StopRequest::kCancel:
      return engine_results::kCancelled;
    case StopRequest::kHardStop:
      return engine_results::kCancelledByServer;
    case StopRequest::kNone:
      break;
  }
  if (quota_is_used_up_) return engine_results::kQuotaUsedUp;
  if (gave_up_) return engine_results::kEndedAbnormally;
  return journal_.ResultOfRun();
}

}  // namespace ondura::engines
