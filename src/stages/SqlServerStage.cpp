#include "stages/SqlServerStage.h"

#include "reporting/stage_log.h"
#include "stages/sql_names.h"
#include "util/text.h"

namespace ondura {

namespace {

using std::chrono::milliseconds;

constexpr std::string_view kLabel = " SQL Server ";
constexpr std::string_view kRetValue = "100";
constexpr milliseconds kStart{2000};
constexpr milliseconds kElevatedPass{3000};

}  // namespace

Leave SqlServerStage::Run(JobState& state) {
  support_.Begin();
  const std::string& folder = state.run.Sch_SQLTEMP;
  if (folder.empty()) return RefuseWithoutFolder();
  support_.SetLabel(kLabel);
  support_.SleepAndPump(kStart);
  support_.Notify("Started the backup of the MS SQL Server database files...");
  support_.WriteEntryKeys(kRetValue);
  const bool is_elevated_hosts_work = job_.services.helpers.IsVista();
  std::vector<std::string> fields;
  if (!is_elevated_hosts_work) fields = ReadFields();
  job_.services.trace.User(" Started Backup of SQL Server files");
  support_.Remove(job_.services.installation.UserFile(sql_names::kStageLog));
  support_.EmptyBackupSet();
  if (!support_.CanWriteTo(folder)) return RefuseWithoutAccess();
  if (is_elevated_hosts_work) {
    WaitForElevatedHost();
  } else if (!DumpDatabases(fields)) {
    return LeaveAborted();
  }
  return std::nullopt;
}

JobCode SqlServerStage::RefuseWithoutFolder() {
  job_.services.trace.User(" SQL Temp path not found ");
  return support_.LeaveFailed(
      {" The SQL server backup operation has been cancelled since the SQL Temp path could not be found",
       "The SQL server backup operation has been cancelled since the SQL Temp path could not be found.",
       TotalTime::kDifference},
      kJobStopped);
}

JobCode SqlServerStage::RefuseWithoutAccess() {
  Options& trace = job_.services.trace.plain();
  trace.WriteTrace("Cont_SchBackup :  PERMISSION DENIED :: ");
  trace.WriteTrace(
      "Unable to continue the SQL Server Backup operation, please make sure that the disk is not full or "
      "write protected.");
  return support_.LeaveFailed(
      {" Unable to continue the SQL server backup operation. Please check if the disk is full or write "
       "protected",
       "Unable to continue the SQL server backup operation. Please check if the disk is full or write "
       "protected.",
       TotalTime::kLabel},
      kJobFailed);
}

JobCode SqlServerStage::LeaveAborted() {
  job_.services.trace.User(" User aborted the SQL Server backup");
  return support_.LeaveFailed({" The SQL server backup has been aborted by the user",
                               "The SQL server backup has been aborted by the user", TotalTime::kLabel},
                              kJobFailed);
}

std::vector<std::string> SqlServerStage::ReadFields() {
  Options& trace = job_.services.trace.plain();
  trace.WriteTrace("Cont_SchBackup :  OS not vista ");
  std::vector<std::string> fields = support_.ReadBackupSetFields(sql_names::kKeyword);
  trace.WriteTrace("Cont_SchBackup :  nonvista case backv.count :: " +
                   std::to_string(backup_set_.BackupSetLines.size()));
  return fields;
}

// The host takes the request from the key and answers there; a stop is not looked for meanwhile, since the
// tool is the host's to end.
void SqlServerStage::WaitForElevatedHost() {
  Options& trace = job_.services.trace.plain();
  trace.WriteTrace("came for the vista case: ");
  job_.keys.Write(sql_names::kLocalBackup, sql_names::kAsked);
  trace.WriteTrace("Cont_SchBackup : vista case  LocalBackup :: " + job_.keys.Read(sql_names::kLocalBackup));
  while (job_.keys.Read(sql_names::kLocalBackup) == sql_names::kAsked) support_.SleepAndPump(kElevatedPass);
}

bool SqlServerStage::DumpDatabases(const std::vector<std::string>& fields) {
  job_.services.trace.plain().WriteTrace("came for non vista case: ");
  for (const std::string& field : fields) {
    if (!StageSupport::FieldCounts(field, sql_names::kKeyword)) continue;
    support_.LetToolEnd(sql_names::kTool);
    if (!dump_.BackupToDisk(Trim(field))) return false;
  }
  return true;
}

std::vector<SelectedItem> SqlServerStage::Items(JobState& state) {
  const std::string& folder = state.run.Sch_SQLTEMP;
  state.run.dump_folder = folder.ends_with('\\') ? WithoutLast(folder) : std::string_view{folder};
  std::vector<SelectedItem> items;
  if (!job_.services.helpers.IsVista()) {
    for (const std::string& path : backup_set_.BackupSetLines) {
      TraceDump(path);
      items.push_back({path, ItemKind::kFile});
    }
    if (items.empty()) job_.services.trace.User(NoItemsTrace());
  }
  if (items.empty()) items.push_back({folder, ItemKind::kFolder});
  return items;
}

std::string_view SqlServerStage::NoItemsTrace() const {
  return " : There is no SQL Server database available ";
}

void SqlServerStage::TraceDump(const std::string& path) {
  job_.services.trace.plain().WriteTrace(path);
  if (job_.services.machine.files.Exists(path)) return;
  WriteStageLogLine(job_.services.machine, job_.services.installation.UserFile(sql_names::kStageLog),
                    "Backup failed. Couldn't find the file name = " + std::string{Trim(path)}, kStageError);
}

}  // namespace ondura
