#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "engine/engine_results.h"
#include "rehearsal/common/Client.h"
#include "rehearsal/common/FileStates.h"
#include "rehearsal/common/LocalDatabase.h"
#include "rehearsal/common/Vault.h"
#include "rehearsal/engine/ProgressFile.h"
#include "rehearsal/engine/SessionReport.h"
#include "rehearsal/engine/StageData.h"
#include "rehearsal/engine/StopRequests.h"
#include "rehearsal/engine/candidate.h"

namespace ondura::rehearsal {

// One transfer: finds what has changed since the last one and copies it into the vault.
//
// With the local database method the run walks the selection itself and compares with its database. With
// the compare-list method it takes the files from the list that the job writes, and compares with the vault.
// With either it sends what the job's stage has prepared and neither of the two has named.
class BackupRun {
 public:
  BackupRun(Client& client, Vault& vault);

  EngineResult Run();

 private:
  void RunByDatabase();
  void RunByCompareList();

  std::vector<Candidate> StageFilesLeft();

  // Sorts out what has changed and sends it.
  void Transfer(const std::vector<Candidate>& files);
  std::vector<Candidate> PickChanged(const std::vector<Candidate>& files);

  // Whether another file of this run has the same name but for its letter case: both have one place in the
  // vault.
  bool SharesPlace(const std::string& path);
  void Send(const Candidate& file);

  // Waits as long as a file is to take at least. False when the run has been ended meanwhile.
  bool KeepPace();

  [[nodiscard]] bool FitsQuota(const Candidate& file) const;

  // True when a person, the clock or the quota has ended the run.
  bool IsOver();
  EngineResult ResultOfRun();
  void WriteNames(std::string_view name, const std::vector<std::string>& paths);

  Client& client_;
  Vault& vault_;
  LocalDatabase database_;
  StageData stage_data_;
  StopRequests stop_requests_;
  ProgressFile progress_;
  SessionReport report_;

  FileStates known_;
  std::unordered_map<std::string, std::string> places_;  // the files of this run by their lower-case paths
  RunFigures figures_;
  std::vector<std::string> changed_paths_;
  std::vector<std::string> in_sync_paths_;
  bool met_exclusion_ = false;
  bool gave_up_ = false;
  bool quota_is_used_up_ = false;
  std::uint64_t used_bytes_ = 0;
  std::uint64_t max_bytes_ = 0;
  std::chrono::milliseconds pace_;
};

// Bytes that a user may keep in a vault that says nothing else.
std::uint64_t DefaultQuotaBytes(Client& client);

}  // namespace ondura::rehearsal
