#pragma once

#include <string>

#include "backupset/CompareList.h"
#include "backupset/Exclusions.h"
#include "backupset/Selection.h"
#include "backupset/StopCheck.h"
#include "job/AbortForms.h"
#include "job/JobContext.h"
#include "job/TransferWait.h"
#include "reporting/LifeSign.h"
#include "util/TextFiles.h"

namespace ondura {

// The stop test of the walk, which also shows that the job lives: a walk of hours traces nothing, and the
// engine may have ended meanwhile.
class WalkStop : public StatusStopCheck {
 public:
  explicit WalkStop(const JobServices& services)
      : StatusStopCheck(services.machine, services.installation, services.progress.ProgressEnded()),
        life_(services.trace, services.machine.clock, "  Preparing the list of files") {}

  void Begin() { life_.Begin(); }

  bool Stopped() override {
    life_.Show();
    return StatusStopCheck::Stopped();
  }

 private:
  LifeSign life_;
};

// The transfer itself: the engine's command 51 does the upload while the job prepares what it needs, watches
// it and turns its result into the job's outcome.
class TransferRun {
 public:
  TransferRun(JobContext& job, AbortForms& abort);

  // Key `DB` asks for the local database method.
  bool UsesLocalDatabase();

  // The user's selection into the job's items.
  void ReadBackupSet();

  // Starts the database manager and runs command 28.
  Leave StartLocalDatabase();

  enum class Next { kWrapUp, kLeave, kRunAgain };
  struct Outcome {
    Next next = Next::kLeave;
    JobCode code = kJobStopped;
    EngineResult result;
  };

  // From the shadow copy's folder to the branch of the engine's result. An engine that asks for another run
  // and is refused it has given an answer like any other.
  enum class Rerun { kGranted, kRefused };
  Outcome Run(Rerun rerun);

  // `SCount` := the skipped items, whose count begins anew.
  void WriteSkippedCount();

 private:
  // Before the engine runs.
  void LaunchDatabaseManager();
  Leave FailServerList(EngineResult result);
  void SettleShadowTempFolder();
  void ResetInputKeys();
  Leave ChooseMethod(bool& use_compare_list);

  // While it runs.
  Leave StartEngine();
  JobCode FailUnclearedResult();
  Leave PrepareInput();
  Leave WalkItems();
  JobCode FailInput();
  bool WriteInputKeys();
  void RewriteExcludedFiles();

  // When it has ended.
  void CleanUpAfterEngine();
  JobCode WrapUpHardStop();
  EngineResult ReadEndResult();
  Outcome BranchOnResult(EngineResult result);

  // The branches of its result (transfer_results.cpp).
  JobCode EndUnconnected(EngineResult result);
  JobCode EndLocked(EngineResult result);
  JobCode EndRunningElsewhere(EngineResult result);
  JobCode EndExcluded(EngineResult result);
  JobCode EndWithFailureFile(EngineResult result, std::string_view text);
  JobCode EndNothingNew(EngineResult result);
  JobCode EndOfRow(EngineResult result, std::string_view trace_text, JobCode code);
  void TakeDone();
  void TakeUpToDate();
  void TakeCancelled(EngineResult result);
  void TakeOther(EngineResult result);
  std::string SelectionText();
  void FindSessionFile();
  std::string Path(std::string_view name) const { return job_.installation().UserFile(name); }

  JobContext& job_;
  AbortForms& abort_;
  TextFiles text_files_;
  Selection selection_;
  Exclusions exclusions_;
  WalkStop stop_;
  CompareList compare_list_;
  int abnormal_ends_ = 0;
};

}  // namespace ondura
