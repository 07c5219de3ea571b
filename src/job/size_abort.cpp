#include "job/size_abort.h"

#include <string>

#include "engine/engine_files.h"
#include "job/job_texts.h"

namespace ondura {

void LeaveSizeCalculation(JobContext& job) {
  const JobServices& services = job.services;
  JobRun& run = job.state.run;
  services.trace.plain().WriteTrace("ScheduleCancelled 1");
  services.trace.plain().WriteTrace("Aborted...");
  run.result_text = job_texts::kUserAbort;
  job.keys.WriteStatus(StatusWord::kFailed);
  run.session_path = services.session_log.NewPath();
  services.trace.User(" " + run.result_text + run.session_path);
  services.session_log.WriteTimedMessage(run.session_path, run.result_text, SessionWrite::kAppend);
  run.cancelled = true;
  job.end_status.WriteJobEndStatus(JobEnd::kOrdinary);
  job.temp_folder.DeleteTempFolder();
  services.machine.files.Remove(services.installation.UserFile(engine_files::kMappedDrives), Removal::kPlain);
  services.programs.IsProcessRunningByModule(services.installation.ClientExe, Kill::kYes);
}

}  // namespace ondura
