// The branches of the transfer's result: each turns one answer of the engine into the job's outcome.

#include "engine/engine_files.h"
#include "engine/engine_results.h"
#include "job/TransferRun.h"
#include "job/job_texts.h"
#include "text/text.h"

namespace ondura {

TransferRun::Outcome TransferRun::BranchOnResult(EngineResult result) {
  using namespace engine_results;
  const auto leave = [&](JobCode code) { return Outcome{Next::kLeave, code, result}; };
  if (IsConnectionTrouble(result) || result == kConnectionLost || result == kWrongEncryptionPassword) {
    return leave(EndUnconnected(result));
  }
  if (result == engine_results::kLocked) return leave(EndLocked(result));
  if (result == engine_results::kRunsElsewhere) return leave(EndRunningElsewhere(result));
  if (result == engine_results::kAllExcluded) return leave(EndExcluded(result));
  if (result == engine_results::kNothingSelected) {
    return leave(EndWithFailureFile(result, job_texts::kNothingSelected));
  }
  if (result == engine_results::kSomeFailed) {
    return leave(EndWithFailureFile(result, job_texts::kSomeFailed));
  }
  if (result == kNothingNew || result == kNothingNewInSelection || result == kNothingNewForAccount) {
    return leave(EndNothingNew(result));
  }
  if (result == kDone) {
    TakeDone();
  } else if (result == kUpToDate) {
    TakeUpToDate();
  } else if (result == kCancelled || result == kCancelledByServer) {
    TakeCancelled(result);
  } else {
    TakeOther(result);
  }
  job_.keys.WriteResult(result);
  return {Next::kWrapUp, job_.state.run.code, result};
}

// A wrong encryption password does not keep its own text: the connection's text replaces it.
JobCode TransferRun::EndUnconnected(EngineResult result) {
  JobRun& run = job_.state.run;
  job_.trace().User("  Not able to connect. Error No : " + result.Text());
  if (result == engine_results::kCannotConnect) job_.end_status.WriteBackupFailed();
  if (result == engine_results::kWrongEncryptionPassword) {
    job_.trace().User("  User Encryption password is wrong");
  }
  run.extra_mail_text = job_texts::kConnectionReason;
  run.result_text = job_texts::kUnableToPerform;
  job_.keys.WriteResult(result);
  job_.keys.MarkEndedByMessage();
  job_.keys.StampEnd();
  job_.end_status.WriteJobEndStatus(result);
  job_.temp_folder.DeleteTempFolder();
  job_.keys.AddFailureDay();
  return kJobFailed;
}

// The trace is that of excluded items; the text is the lock's own.
JobCode TransferRun::EndLocked(EngineResult result) {
  job_.trace().User(std::string{job_texts::kExcludedTrace} + result.Text());
  job_.state.run.result_text = job_texts::kLocked;
  job_.keys.MarkEndedByMessage();
  job_.end_status.WriteJobEndStatus(JobEnd::kOrdinary);
  job_.keys.AddFailureDay();
  return kJobStopped;
}

JobCode TransferRun::EndRunningElsewhere(EngineResult result) {
  const std::string address = job_.services.store.ReadProfileValue(profile_keys::kMultipleIp);
  job_.trace().User(
      "  Backup is in progress from the ip address ( " + address +
      " ) Wait till it is complete to begin the backup on this machine.  Err No = " + result.Text());
  job_.state.run.result_text = ReplaceAll(job_texts::kRunsElsewhere, job_texts::kAddressGap, address);
  job_.keys.MarkEndedByMessage();
  job_.end_status.WriteJobEndStatus(JobEnd::kOrdinary);
  job_.keys.AddFailureDay();
  return kJobStopped;
}

JobCode TransferRun::EndExcluded(EngineResult result) {
  job_.state.run.result_text = job_texts::kAllExcluded;
  return EndOfRow(result, std::string{job_texts::kExcludedTrace} + result.Text(), kJobStopped);
}

JobCode TransferRun::EndWithFailureFile(EngineResult result, std::string_view text) {
  job_.state.run.result_text = text;
  job_.end_status.WriteBackupFailed();
  return EndOfRow(result, "", kJobStopped);
}

JobCode TransferRun::EndNothingNew(EngineResult result) {
  job_.state.run.result_text = SelectionText();
  return EndOfRow(result, std::string{job_texts::kNothingChangedTrace} + result.Text(), kJobOrdinaryEnd);
}

JobCode TransferRun::EndOfRow(EngineResult result, std::string_view trace_text, JobCode code) {
  job_.trace().User(trace_text);
  job_.keys.WriteResult(result);
  if (result != engine_results::kNothingNewForAccount) job_.keys.MarkEndedByMessage();
  job_.end_status.WriteJobEndStatus(result);
  job_.keys.ClearFailureDays();
  FindSessionFile();
  return code;
}

void TransferRun::TakeDone() {
  job_.state.run.code = kJobOrdinaryEnd;
  job_.keys.WriteResult(engine_results::kDone);
  job_.keys.ClearFailureDays();
}

void TransferRun::TakeUpToDate() {
  job_.state.run.result_text = SelectionText();
  job_.state.run.code = kJobStopped;
  job_.keys.MarkEndedByMessage();
  job_.keys.ClearFailureDays();
}

void TransferRun::TakeCancelled(EngineResult result) {
  job_.trace().User(" Scheduled backup canceled");
  job_.state.run.code = kJobStopped;
  job_.keys.WriteResult(result);
  job_.state.run.cancelled = true;
  job_.keys.MarkEndedByMessage();
  job_.keys.ClearFailureDays();
}

void TransferRun::TakeOther(EngineResult result) {
  job_.state.run.code = kJobStopped;
  job_.keys.WriteResult(result);
  job_.keys.Write(profile_keys::kDllStatusSecond, run_state::kTransfer);
}

std::string TransferRun::SelectionText() {
  const auto size = job_.machine().files.Size(Path(engine_files::kSelectionList));
  return std::string{size.value_or(0) > 0 ? job_texts::kNothingChanged : job_texts::kNothingSelected};
}

}  // namespace ondura
