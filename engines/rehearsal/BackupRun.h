#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "engine/engine_results.h"
#include "engines/common/Store.h"
#include "engines/rehearsal/FileStates.h"
#include "engines/rehearsal/LocalDatabase.h"
#include "engines/rehearsal/Vault.h"

namespace ondura::engines {

// One transfer: finds what has changed since the last one and copies it into the vault.
//
// With the local database method the run walks the selection itself and compares with its database. With
// the compare-list method it takes the files from the list that the job writes, and compares with the vault.
// With either it sends what the job's stage has prepared and neither of the two has named.
class BackupRun {
 public:
  BackupRun(Client& client, Vault& vault, const TransferRequest& request, TransferJournal& journal,
            StopRequests& stop);

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

  Client& client_;
  Vault& vault_;
  TransferRequest request_;
  TransferJournal& journal_;
  StopRequests& stop_;
  LocalDatabase database_;

  FileStates known_;
  std::unordered_map<std::string, std::string> places_;  // the files of this run by their lower-case paths
  bool gave_up_ = false;
  bool quota_is_used_up_ = false;
  std::uint64_t used_bytes_ = 0;
  std::uint64_t max_bytes_ = 0;
  std::chrono::milliseconds pace_;
};

// Bytes that a user may keep in a vault that says nothing else.
std::uint64_t DefaultQuotaBytes(Client& client);

}  // namespace ondura::engines
