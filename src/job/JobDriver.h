#pragma once

#include "job/AbortForms.h"
#include "job/Connection.h"
#include "job/JobContext.h"
#include "job/TransferRun.h"

namespace ondura {

// One whole scheduled backup of the current user, from its first stage to its result. What it is to do
// is in the shared state: the current user and the record in `schvTemp`.
class JobDriver {
 public:
  explicit JobDriver(JobContext& job);

  // Returns the job's code, as job_state.h says. The schedule file's path is the same afterwards, whatever
  // the host has called meanwhile.
  JobCode Cont_SchBackup();

 private:
  JobCode RunOnce();
  void Reset();
  void WriteDriveList();
  void ReadProfile();
  Leave RefuseWithoutEncryptionPassword();
  Leave RunStage();
  void BeginConnection();
  void ResetProgressFiles();
  Leave EndAtSupportMarker();
  void TakeStageItems();
  void FallBackWhenSpaceIsShort();
  void CheckServiceRunning();
  Leave PrepareBackupSet();
  JobCode Transfer();
  JobCode RunAgain();
  JobCode WrapUp(EngineResult result);
  EngineResult RefreshQuota(EngineResult result);
  void TestQuota(EngineResult result);

  JobContext& job_;
  AbortForms abort_;
  Connection connection_;
  TransferRun transfer_;
  int nested_runs_ = 0;
  bool was_refused_a_run_ = false;
};

}  // namespace ondura
