#pragma once

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

  void Cont_startschBackup();

 private:
  struct Best {
    std::string key;
    std::string user;
    std::string time;
  };
  enum class PassEnd { kNormal, kAtOnce };

  void RestoreInstallFolder();
  void DeleteHardStopMarker();
  void LookAtEngine();
  bool OtherHostIsBetweenEngineRuns();
  void OpenPass();
  bool CleanStaleHeader();
  void UpkeepWithoutSchedule();
  void ScanUsers(const std::vector<std::string>& users);
  void OfferUser(const std::string& user);
  void PublishBest();
  bool BestIsNear();
  PassEnd ServeBest();
  PassEnd ServeLoaded();
  void CapTrace(const std::string& path);
  void TraceDefaultUser(std::string_view label);
  void UpkeepWithTrace();

  ServiceContext& context_;
  JobBracket& bracket_;
  MissedSchedules& missed_;
  Best best_;
};

}  // namespace ondura
