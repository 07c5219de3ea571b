#pragma once

#include <string>
#include <string_view>

#include "service/Closeup.h"
#include "service/MailLauncher.h"
#include "service/MissedSchedules.h"
#include "service/ServiceContext.h"

namespace ondura {

// What surrounds a job: the record and the machine are made ready before it, and afterwards everything is
// put back, the record moves on and the user is told.
class JobBracket {
 public:
  JobBracket(ServiceContext& context, Closeup& closeup, MissedSchedules& missed, MailLauncher& mail)
      : context_(context), closeup_(closeup), missed_(missed), mail_(mail) {}

  // kScheduleGone: the job has removed the schedule file, and nothing is closed up.
  enum class End { kDone, kScheduleGone };

  End Run();

  // Called by the host: continuous backup runs again, however often it was paused.
  void cont_RestartRealtimeSystem();

 private:
  void PrepareRecord();
  bool IsDisabled();
  bool HeldBack();
  void HoldForContinuousBackup();
  void HoldForInteractiveBackup(bool engine_runs);
  void LetGoOfFile();
  bool PauseContinuousBackup();
  void ResumeContinuousBackup();
  bool FileIsStillOurs();
  void TraceTargetFiles();
  JobCode RunJob();
  void ReleaseHelpers();
  void CloseUp();
  void FinishPass();
  void TraceStatus();
  int AddToPauses(int change);

  ServiceContext& context_;
  Closeup& closeup_;
  MissedSchedules& missed_;
  MailLauncher& mail_;
};

}  // namespace ondura
