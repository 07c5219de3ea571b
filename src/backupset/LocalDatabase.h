#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/machine.h"
#include "profile/Installation.h"
#include "profile/ProfileStore.h"
#include "profile/Transfer.h"
#include "reporting/LifeSign.h"
#include "reporting/Trace.h"
#include "schedule/ResetDate.h"
#include "util/Programs.h"
#include "util/waits.h"

namespace ondura {

// Results of CheckLDBStatus.
inline constexpr std::int16_t kLocalDatabaseReady = 0;
inline constexpr std::int16_t kLocalDatabaseAborted = 4;

// Keeps the engine's database of what has been backed up fit: has it rebuilt before a job where it must
// be, and every seven days.
class LocalDatabase {
 public:
  LocalDatabase(const Machine& machine, const Installation& installation, const Transfer& transfer,
                const ProfileStore& profile, ResetDate& reset_date, Programs& programs, Trace& trace);

  // Called before a job takes the database route; may take as long as a scan. `run_folder_text` is the
  // argument of the engine's command 30. kLocalDatabaseAborted when the user asked for the end meanwhile;
  // what was started then goes on.
  std::int16_t CheckLDBStatus(std::string_view run_folder_text);

  // Removes the database of `user` and the lists that belong to it. Gives up on a file that can't be removed
  // after its retries.
  void DeleteLDBFiles(std::string_view user);

  // Starts the seven-day reset of the current user's database when its date has come, and sets the next.
  void VaccumDB();

  // True when the process that the profile names as the scanner can be opened.
  bool IsScanInProgress();

  // True when another process holds the mutex for longer than a second. With `release` nothing is tested:
  // a handle that is still held is closed, and the answer is false.
  bool IsmutexInProgress(std::string_view name, bool release);

 private:
  std::int16_t WaitForScan();
  std::int16_t RescanByScanner();
  std::int16_t RebuildByEngine(std::string_view run_folder_text);
  std::int16_t WaitForEnd(ProcessHandle process, std::string_view abort_text);
  void EndScanner();
  void TraceDigests();
  void RemoveIfThere(const std::string& path);
  void RetryList(const std::string& folder, std::string_view name);
  void RetryDatabase(const std::string& path);
  // The end of each pass of a wait.
  bool UserAborts();
  std::string RealTimeValue(const ProfileKey& key) const;
  [[nodiscard]] std::int64_t ScannerNumber() const;
  ProcessHandle StartScanner(std::string_view parameters);

  Machine machine_;
  const Installation& installation_;
  const Transfer& transfer_;
  const ProfileStore& profile_;
  ResetDate& reset_date_;
  Programs& programs_;
  Trace& trace_;
  LifeSign life_;
  MutexHandle mutex_ = 0;
};

}  // namespace ondura
