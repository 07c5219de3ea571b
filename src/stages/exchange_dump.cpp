#include "stages/exchange_dump.h"

#include "text/text.h"

namespace ondura {

namespace {

// The handle argument with which a process is ended by id: no window, so that the id counts.
constexpr WindowHandle kNoWindow = 1;

}  // namespace

std::vector<std::string> TakeExchangeFields(StageSupport& support, std::string_view keyword) {
  std::vector<std::string> counted;
  for (const std::string& field : support.ReadBackupSetFields(keyword)) {
    if (StageSupport::FieldCounts(field, keyword)) counted.emplace_back(Trim(field));
  }
  return counted;
}

void StopExchangeDump(JobContext& job, StageSupport& support, std::string_view status_file) {
  support.WriteLine(status_file, "2");
  job.services.trace.plain().WriteTrace("ScheduleCancelled 1");
  job.services.trace.plain().WriteTrace("Aborted...");
  job.services.programs.IsProcessRunningByModule(job.services.installation.ClientExe, Kill::kYes);
  job.services.programs.ProcessTerminate(job.state.run.lClsClientPID, kNoWindow);
  job.state.run.code = kJobStopped;
}

}  // namespace ondura
