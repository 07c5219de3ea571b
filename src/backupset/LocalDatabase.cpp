#include "backupset/LocalDatabase.h"

#include <utility>

#include "engine/engine_command.h"
#include "engine/engine_files.h"
#include "engine/scanner_command.h"
#include "engine/status_word.h"
#include "profile/file_digest.h"
#include "text/text.h"

namespace ondura {

namespace {

using namespace engine_files;

constexpr std::string_view kSignOfLife = "  Waiting for the local database";
constexpr std::string_view kAbortedInForeignScan = "User aborted scheduled backup Scan is going on";
constexpr std::string_view kAbortedInScan = "User aborted scheduled backup Scan in progress";
constexpr std::string_view kAbortedInRebuild = "User aborted scheduled backup 30 in progress";

constexpr std::chrono::milliseconds kPoll{100};
constexpr std::chrono::milliseconds kScannerEnd{1000};
constexpr std::chrono::milliseconds kBeforeRebuild{1000};
constexpr std::chrono::milliseconds kBeforeDelete{2000};
constexpr std::chrono::milliseconds kDeleteRetry{1000};
constexpr std::chrono::milliseconds kDatabaseRetry{5000};
constexpr std::chrono::milliseconds kMutexLimit{1000};
constexpr int kDatabaseTries = 3;

constexpr std::uint32_t kScannerKilled = 1001;
// A process that refuses to end would keep the job for ever; after this many looks the job goes on.
constexpr int kScannerLooks = 100;

// 0 for a number that is no id.
ProcessId IdOf(std::int64_t number) {
  return std::in_range<ProcessId>(number) ? static_cast<ProcessId>(number) : 0;
}

}  // namespace

LocalDatabase::LocalDatabase(const Machine& machine, const Installation& installation,
                             const Transfer& transfer, const ProfileStore& profile, ResetDate& reset_date,
                             Programs& programs, Trace& trace)
    : machine_(machine),
      installation_(installation),
      transfer_(transfer),
      profile_(profile),
      reset_date_(reset_date),
      programs_(programs),
      trace_(trace),
      life_(trace, machine.clock, kSignOfLife) {}

std::int16_t LocalDatabase::CheckLDBStatus(std::string_view run_folder_text) {
  const std::string owner = transfer_.Trf_ReadUserNameProfile(profile_keys::kScheduled);
  const std::string interactive = transfer_.Trf_ReadUserNameProfile(profile_keys::kInteractive);
  life_.Begin();
  const bool changed_hands = !Trim(owner).empty() && !EqualsIgnoringCase(Trim(owner), Trim(interactive));
  if (changed_hands) DeleteLDBFiles(owner);
  const std::string scan = RealTimeValue(profile_keys::kScanStatus);
  const std::string watcher = RealTimeValue(profile_keys::kWatcherStatus);
  trace_.plain().WriteTrace("strScannStatus  : " + scan);
  trace_.plain().WriteTrace("strWatcherStatus  : " + watcher);

  std::int16_t result = kLocalDatabaseReady;
  if (watcher == "1") {
    result = RealTimeValue(profile_keys::kScanStatus) == "1" ? WaitForScan() : RescanByScanner();
  } else {
    TraceDigests();
    if (changed_hands) {
      trace_.User(" b30cmdcall is True so calling backend with 30 ");
      DeleteLDBFiles(owner);
    } else {
      if (scan == "1") EndScanner();
      DeleteLDBFiles(owner);
      machine_.pump.Pump();
      machine_.clock.Sleep(kBeforeRebuild);
    }
    result = RebuildByEngine(run_folder_text);
  }
  if (result != kLocalDatabaseReady) return result;

  transfer_.Trf_WriteUserProfileDefault(profile_keys::kCompareListCount, "0");
  transfer_.Trf_WriteUserProfileDefault(profile_keys::kStatusCheckCount, "1");
  trace_.plain().WriteTrace("LDB Checking is over");
  return kLocalDatabaseReady;
}

std::int16_t LocalDatabase::WaitForScan() {
  trace_.User(" WatcherStatus is 1 : Scan is going on,so wait till Scanstatus is 0 ");
  for (;;) {
    const std::string scan = RealTimeValue(profile_keys::kScanStatus);
    if (scan == "0") trace_.plain().WriteTrace("WatcherStatus is 1 : Scan is over");
    if (scan == "0" || scan.empty()) return kLocalDatabaseReady;
    machine_.clock.Sleep(kPoll);
    machine_.pump.Pump();
    if (!UserAborts()) continue;
    trace_.plain().WriteTrace(kAbortedInForeignScan);
    return kLocalDatabaseAborted;
  }
}

std::int16_t LocalDatabase::RescanByScanner() {
  DeleteLDBFiles(installation_.CurrentUser);
  trace_.User(" WatcherStatus is 1 : Scan is not in progress so call Scan.exe with 29");
  return WaitForEnd(StartScanner(scanner_command::kRebuildForJob), kAbortedInScan);
}

std::int16_t LocalDatabase::RebuildByEngine(std::string_view run_folder_text) {
  const std::string command = EngineParameters(EngineCommand::kBuildDatabase, run_folder_text);
  return WaitForEnd(programs_.LaunchHidden(installation_.ExeLocation + installation_.ClientExe, command,
                                           installation_.WorkingFolder(), 0),
                    kAbortedInRebuild);
}

std::int16_t LocalDatabase::WaitForEnd(ProcessHandle process, std::string_view abort_text) {
  ProcessWatch watch{machine_.processes, process};
  const auto outcome =
      WaitUntilEndedOrStoppedIfStarted(machine_, watch, kPoll, [this] { return UserAborts(); });
  if (outcome == WaitOutcome::kEnded) return kLocalDatabaseReady;
  trace_.plain().WriteTrace(abort_text);
  trace_.plain().WriteTraceMain(abort_text);
  return kLocalDatabaseAborted;
}

void LocalDatabase::EndScanner() {
  trace_.User(" Scan is going on kill backend and call backend with 30 ");
  const ProcessId scanner = IdOf(ScannerNumber());
  if (scanner == 0) return;
  const ProcessHandle handle = machine_.processes.OpenById(scanner, ProcessAccess::kQueryAndTerminate);
  machine_.processes.Terminate(handle, kScannerKilled);
  machine_.clock.Sleep(kScannerEnd);
  for (int look = 0; look < kScannerLooks && machine_.processes.ExitCode(handle) == kStillActive; ++look) {
    trace_.plain().WriteTrace("Process is still running");
    machine_.pump.Pump();
    machine_.clock.Sleep(kPoll);
  }
  trace_.plain().WriteTrace("Backup engine successfully terminated");
  if (handle != kNoProcess) machine_.processes.Close(handle);
}

// The digests are there for whoever reads the trace; the lists are rebuilt whether they differ or not.
void LocalDatabase::TraceDigests() {
  const std::string folder = installation_.UserFolder();
  const std::string selected = FileMd5Hex(machine_, folder + "\\" + std::string{kSelectionList});
  const std::string scanned = FileMd5Hex(machine_, folder + "\\" + std::string{kDatabaseSelection});
  trace_.User(" atbkupchksum : " + selected);
  trace_.User(" Realtimechksum : " + scanned);
}

void LocalDatabase::DeleteLDBFiles(std::string_view user) {
  const std::string folder = installation_.FolderOf(user) + "\\";
  const std::string database = folder + std::string{kDatabaseFolder} + "\\" + std::string{kDatabase};
  machine_.clock.Sleep(kBeforeDelete);
  RemoveIfThere(folder + std::string{kDatabaseSelection});
  RemoveIfThere(folder + std::string{kDatabaseAutomaticSelection});
  RemoveIfThere(database);
  RetryList(folder, kDatabaseSelection);
  RetryList(folder, kDatabaseAutomaticSelection);
  RetryDatabase(database);
}

void LocalDatabase::RemoveIfThere(const std::string& path) {
  if (machine_.files.Exists(path)) machine_.files.Remove(path, Removal::kForce);
}

void LocalDatabase::RetryList(const std::string& folder, std::string_view name) {
  const std::string path = folder + std::string{name};
  if (!machine_.files.Exists(path)) return;
  trace_.plain().WriteTrace("File(" + std::string{name} + ") exists even after DeleteFile");
  machine_.clock.Sleep(kDeleteRetry);
  machine_.files.Remove(path, Removal::kForce);
}

void LocalDatabase::RetryDatabase(const std::string& path) {
  for (int attempt = 1; attempt <= kDatabaseTries && machine_.files.Exists(path); ++attempt) {
    trace_.plain().WriteTrace("File(" + std::string{kDatabase} + ") exists even after DeleteFile" +
                              std::to_string(attempt) + "Retry");
    machine_.pump.Pump();
    machine_.clock.Sleep(kDatabaseRetry);
    machine_.files.Remove(path, Removal::kForce);
  }
}

void LocalDatabase::VaccumDB() {
  if (!reset_date_.IsSet()) {
    reset_date_.SetNext();
    trace_.plain().WriteTrace("Next DB Date is set ");
    return;
  }
  if (!reset_date_.bCheckDate()) return;
  trace_.plain().WriteTrace("7Days reached reset DB and set date ");
  const ProcessWatch scanner{machine_.processes, StartScanner(scanner_command::kSevenDayReset)};
  reset_date_.SetNext();
}

bool LocalDatabase::IsScanInProgress() {
  const std::int64_t number = ScannerNumber();
  trace_.User(" ClientProcID : " + std::to_string(number));
  const ProcessId scanner = IdOf(number);
  if (scanner == 0) return false;
  const ProcessHandle handle = machine_.processes.OpenById(scanner, ProcessAccess::kQuery);
  if (handle == kNoProcess) {
    trace_.User(" Process is not running ");
    return false;
  }
  trace_.User(" Process is running with handle : " + std::to_string(handle));
  machine_.processes.Close(handle);
  return true;
}

bool LocalDatabase::IsmutexInProgress(std::string_view name, bool release) {
  bool in_use = false;
  if (!release) {
    mutex_ = machine_.mutexes.Create(name);
    trace_.User(" Mutex Handle ID : " + std::to_string(mutex_));
    in_use = !machine_.mutexes.Wait(mutex_, kMutexLimit);
    trace_.User((in_use ? " Global Mutex is in use with Handle ID : "
                        : " Global Mutex is Not in use with Handle ID : ") +
                std::to_string(mutex_));
    if (!in_use) machine_.mutexes.Release(mutex_);
  }
  if (mutex_ != 0) machine_.mutexes.Close(mutex_);
  mutex_ = 0;
  return in_use;
}

bool LocalDatabase::UserAborts() {
  life_.Show();
  return StatusWordOf(profile_.ReadProfileValue(profile_keys::kStatus)) == StatusWord::kStopAsked;
}

std::string LocalDatabase::RealTimeValue(const ProfileKey& key) const {
  return std::string{Trim(profile_.ReadProfileValue(key))};
}

std::int64_t LocalDatabase::ScannerNumber() const {
  return ParseInteger(RealTimeValue(profile_keys::kScannerId)).value_or(0);
}

ProcessHandle LocalDatabase::StartScanner(std::string_view parameters) {
  return programs_.LaunchHidden(installation_.ExeLocation + installation_.ExeGroup + "Scan.exe", parameters,
                                installation_.WorkingFolder(), 0);
}

}  // namespace ondura
