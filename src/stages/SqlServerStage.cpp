#include "stages/SqlServerStage.h"

#include "reporting/stage_log.h"
#include "stages/sql_names.h"
#include "text/text.h"

namespace ondura {

namespace {

using std::chrono::milliseconds;

constexpr std::string_view kLabel = " SQL Server ";
constexpr std::string_view kNoDatabase = " : There is no SQL Server database available ";
constexpr milliseconds kStart{2000};
constexpr milliseconds kElevatedPass{3000};
constexpr std::chrono::minutes kSilence{10};
constexpr std::string_view kNoAnswer =
    "The SQL Server databases wait to be dumped: no elevated host has answered for ten minutes. Start it, or "
    "stop the backup.";

}  // namespace

Leave SqlServerStage::Run(JobState& state) {
  support_.Begin();
  const std::string& folder = state.run.Sch_SQLTEMP;
  if (folder.empty()) return RefuseWithoutFolder();
  support_.SetLabel(kLabel);
  support_.SleepAndPump(kStart);
  support_.Notify("Started the backup of the MS SQL Server database files...");
  support_.WriteEntryKeys(engine_results::kPreparingSqlServer);
  const bool is_elevated_hosts_work = job_.services.facts.IsVista();
  std::vector<std::string> fields;
  if (!is_elevated_hosts_work) fields = ReadFields();
  job_.trace().User(" Started Backup of SQL Server files");
  support_.Remove(job_.installation().UserFile(sql_names::kStageLog));
  support_.EmptyBackupSet();
  if (!support_.CanWriteTo(folder)) return RefuseWithoutAccess();
  const bool is_done = is_elevated_hosts_work ? WaitForElevatedHost() : DumpDatabases(fields);
  return is_done ? Leave{} : LeaveAborted();
}

JobCode SqlServerStage::RefuseWithoutFolder() {
  job_.trace().User(" SQL Temp path not found ");
  return support_.LeaveFailed(
      {" The SQL server backup operation has been cancelled since the SQL Temp path could not be found",
       "The SQL server backup operation has been cancelled since the SQL Temp path could not be found.",
       TotalTime::kDifference},
      kJobStopped);
}

JobCode SqlServerStage::RefuseWithoutAccess() {
  Options& trace = job_.trace().plain();
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
  job_.trace().User(" User aborted the SQL Server backup");
  return support_.LeaveFailed({" The SQL server backup has been aborted by the user",
                               "The SQL server backup has been aborted by the user", TotalTime::kLabel},
                              kJobFailed);
}

std::vector<std::string> SqlServerStage::ReadFields() {
  Options& trace = job_.trace().plain();
  trace.WriteTrace("Cont_SchBackup :  OS not vista ");
  std::vector<std::string> fields = support_.ReadBackupSetFields(sql_names::kKeyword);
  trace.WriteTrace("Cont_SchBackup :  nonvista case backv.count :: " +
                   std::to_string(backup_set_.BackupSetLines.size()));
  return fields;
}

// The host takes the request from the key and answers there. False when the job is stopped meanwhile. A host
// that works makes the list of the dumps anew and then runs the tool.
bool SqlServerStage::WaitForElevatedHost() {
  const Machine& machine = job_.machine();
  const std::string dump_list = job_.installation().DataFile(sql_names::kDumpList);
  Options& trace = job_.trace().plain();
  trace.WriteTrace("came for the vista case: ");
  job_.keys.Write(profile_keys::kLocalBackup, sql_names::kAsked);
  trace.WriteTrace("Cont_SchBackup : vista case  LocalBackup :: " +
                   job_.keys.Read(profile_keys::kLocalBackup));
  auto listed = machine.files.Modified(dump_list);
  LocalTime last_sign = machine.clock.Now();
  bool is_reported = false;
  while (job_.keys.Read(profile_keys::kLocalBackup) == sql_names::kAsked) {
    support_.SleepAndPump(kElevatedPass);
    if (support_.StopAsked()) {
      WithdrawRequest();
      return false;
    }
    const auto listed_now = machine.files.Modified(dump_list);
    const LocalTime now = machine.clock.Now();
    const bool is_sign = listed_now != listed || now < last_sign ||
                         job_.services.programs.IsProcessRunningByModule(sql_names::kTool, Kill::kNo);
    listed = listed_now;
    if (is_sign) last_sign = now;
    const bool is_silent = now - last_sign >= kSilence;
    if (is_silent && !is_reported) ReportSilence();
    if (is_reported && !is_silent) job_.end_status.WriteStatusText("");
    is_reported = is_silent;
  }
  if (is_reported) job_.end_status.WriteStatusText("");
  return true;
}

// A dump that runs is asked to end; the host takes up no other database for a request that is gone.
void SqlServerStage::WithdrawRequest() {
  job_.keys.Write(profile_keys::kLocalBackup, sql_names::kWithdrawn);
  if (!job_.services.programs.IsProcessRunningByModule(sql_names::kTool, Kill::kNo)) return;
  const std::string folder = job_.installation().DataFile(sql_names::kStatusFolder);
  support_.WriteLine(folder + "\\" + std::string{sql_names::kStatusFile}, sql_names::kStop);
}

void SqlServerStage::ReportSilence() {
  job_.trace().User("  " + std::string{kNoAnswer});
  job_.end_status.WriteStatusText(kNoAnswer);
}

bool SqlServerStage::DumpDatabases(const std::vector<std::string>& fields) {
  job_.trace().plain().WriteTrace("came for non vista case: ");
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
  if (!job_.services.facts.IsVista()) {
    for (const std::string& path : backup_set_.BackupSetLines) {
      TraceDump(path);
      items.push_back({path, ItemKind::kFile});
    }
    if (items.empty()) job_.trace().User(kNoDatabase);
  }
  if (items.empty()) items.push_back({folder, ItemKind::kFolder});
  return items;
}

void SqlServerStage::TraceDump(const std::string& path) {
  job_.trace().plain().WriteTrace(path);
  if (job_.machine().files.Exists(path)) return;
  WriteStageLogLine(job_.machine(), job_.installation().UserFile(sql_names::kStageLog),
                    "Backup failed. Couldn't find the file name = " + std::string{Trim(path)}, kStageError);
}

}  // namespace ondura
