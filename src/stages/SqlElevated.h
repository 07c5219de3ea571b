#pragma once

#include <string>
#include <string_view>

#include "job/JobContext.h"
#include "schedule/BackupSetStore.h"
#include "stages/SqlDump.h"
#include "stages/StageSupport.h"

namespace ondura {

// The elevated host's side of the SQL dumps: what a job, or another program of the client, may not start
// itself. The host calls both operations again and again; a call that comes in while the same one works
// returns at once.
class SqlElevated {
 public:
  SqlElevated(JobContext& job, StageSupport& support, BackupSetStore& backup_set, DatabaseDump& dump)
      : job_(job),
        support_(support),
        backup_set_(backup_set),
        dump_(dump),
        text_files_(job.services.machine.files, job.services.machine.code_page) {}

  // At start-up: nothing is being dumped.
  void ClearLaunchFlags();

  // Dumps the databases of the default user when his job asks for it, and says when it is done. The default
  // user becomes the current one.
  void Cont_LaunchAdminProcessSQL();

  // Starts the dump that another program has asked for, and hands the current user's wish to stop on to the
  // tool.
  void Cont_LaunchSQlAdminProcess();

 private:
  bool IsAskedFor();
  void DumpForJob();
  void DumpDatabases();
  void TraceFields(const std::vector<std::string>& fields);
  void Serve();
  std::string ReadCommand(const std::string& file);
  bool StopOrEnd(StartedProgram& tool);

  JobContext& job_;
  StageSupport& support_;
  BackupSetStore& backup_set_;
  DatabaseDump& dump_;
  TextFiles text_files_;
  bool g_bLaunchVistaSQL = false;
  bool serves_request_ = false;
};

}  // namespace ondura
