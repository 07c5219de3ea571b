#pragma once

#include <optional>
#include <string>
#include <vector>

#include "service/JobBracket.h"
#include "service/MissedSchedules.h"
#include "service/ServiceContext.h"

namespace ondura {

// One pass of the scheduler: the earliest occurrence over all users, and what is to be done about it. A pass
// runs one job at most, inside the tick that called it.
class DispatchPass {
 public:
  DispatchPass(ServiceContext& context, JobBracket& bracket, MissedSchedules& missed)
      : context_(context), bracket_(bracket), missed_(missed) {}

  // A call that comes in while a pass is running returns at once.
  void Cont_startschBackup();

  // One job on the shared state as it is, under the same guard: a call that comes in while a pass or a
  // job is running does nothing, and says so with kJobStopped.
  JobCode Cont_SchBackup();

  [[nodiscard]] bool IsRunning() const { return is_running_; }

 private:
  struct Best {
    std::string key;
    std::string user;
    std::string time;
    bool stands = false;
  };
  enum class PassEnd { kNormal, kAtOnce };

  void RunPass();
  void RestoreInstallFolder();
  void DeleteHardStopMarker();
  void LookAtEngine();
  void OpenPass();
  bool CleanStaleHeader();
  void UpkeepWithoutSchedule();
  void ScanUsers(const std::vector<std::string>& users);
  void OfferUser(const std::string& user);
  void OfferRecord(const std::string& user, const ScheduleRecord& record);
  void PublishBest();
  bool IsNear(const std::string& key);
  PassEnd ServeBest();
  // The key of the record that is served, before it moves on; std::nullopt without a readable schedule file.
  std::optional<std::string> LoadRecord(const std::string& path);
  PassEnd ServeLoaded(const std::string& key);
  void NoteIfItStands(const std::string& key);
  void CapTrace(const std::string& path);
  void TraceDefaultUser(std::string_view label);
  void UpkeepWithTrace();

  ServiceContext& context_;
  JobBracket& bracket_;
  MissedSchedules& missed_;
  bool is_running_ = false;
  Best best_;
  // The best of those that don't stand in their file after they were dealt with.
  Best best_of_others_;
};

}  // namespace ondura
