#include "stages/SqlElevated.h"

#include "stages/sql_names.h"
#include "text/separators.h"
#include "text/text.h"

namespace ondura {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kSettleTime{2000};
constexpr milliseconds kWatchPass{100};
constexpr std::int16_t kPluginProduct = 2;
constexpr std::string_view kRequested = "1";
constexpr std::string_view kServed = "2";

// The tool's name in two traces. The tool itself has one name for all products.
std::string_view NameInTraces(const Installation& installation) {
  return installation.ProductNumber == kPluginProduct ? "Ondura_sqlbackup.exe" : sql_names::kTool;
}

}  // namespace

void SqlElevated::ClearLaunchFlags() {
  g_bLaunchVistaSQL = false;
  serves_request_ = false;
}

void SqlElevated::Cont_LaunchAdminProcessSQL() {
  if (g_bLaunchVistaSQL) return;
  job_.installation().CurrentUser = job_.services.store.ReadDefaultUser(profile_keys::kDefaultUser);
  if (!IsAskedFor()) return;
  g_bLaunchVistaSQL = true;
  DumpForJob();
  job_.machine().clock.Sleep(kSettleTime);
  job_.keys.Write(profile_keys::kLocalBackup, sql_names::kDumped);
  Trace& trace = job_.trace();
  trace.User(" Cont_LaunchAdminProcessSQL LocalBackup Value :: " +
             job_.keys.Read(profile_keys::kLocalBackup));
  trace.plain().WriteTrace("[SQL] Backup completed");
  g_bLaunchVistaSQL = false;
  trace.User(" Cont_LaunchAdminProcessSQL g_bLaunchVistaSQL :: False");
}

bool SqlElevated::IsAskedFor() { return job_.keys.Read(profile_keys::kLocalBackup) == sql_names::kAsked; }

void SqlElevated::DumpForJob() {
  const JobServices& services = job_.services;
  Options& trace = services.trace.plain();
  trace.WriteTraceService("calling exe: " + std::string{NameInTraces(services.installation)});
  trace.WriteTrace("Cont_LaunchAdminProcessSQL : strTemp :: " +
                   services.installation.DataFile(kBackupSetFileName));
  backup_set_.BackupSetFilePath = services.installation.UserFile(kBackupSetFileName);
  trace.WriteTrace("backupsetdata file path: " + backup_set_.BackupSetFilePath);
  services.machine.clock.Sleep(kSettleTime);
  trace.WriteTrace("Calling DB_ReadBackdata ");
  backup_set_.DB_ReadBackdata();
  services.machine.clock.Sleep(kSettleTime);
  DumpDatabases();
}

void SqlElevated::DumpDatabases() {
  const JobServices& services = job_.services;
  Options& trace = services.trace.plain();
  const std::vector<std::string> fields = support_.FindBackupSetFields(sql_names::kKeyword);
  TraceFields(fields);
  text_files_.Write(services.installation.DataFile(sql_names::kDumpList), "", Encoding::kCodePage);
  if (IsAskedFor()) {
    for (const std::string& field : fields) {
      if (!StageSupport::FieldCounts(field, sql_names::kKeyword)) continue;
      if (!IsAskedFor()) break;  // the job was stopped meanwhile
      trace.WriteTrace("DB name is: " + field);
      trace.WriteTrace("before checking exe status: ");
      support_.LetToolEnd(sql_names::kTool);
      trace.WriteTrace("calling SQL BackupToDisk: " + std::string{NameInTraces(services.installation)});
      if (!dump_.BackupToDisk(Trim(field))) break;
    }
  }
  services.machine.clock.Sleep(kSettleTime);
}

void SqlElevated::TraceFields(const std::vector<std::string>& fields) {
  Options& trace = job_.trace().plain();
  trace.WriteTrace("backv Count: " + std::to_string(backup_set_.BackupSetLines.size()));
  trace.WriteTrace("Count: " + std::to_string(fields.size()));
  for (const std::string& field : fields) trace.WriteTrace("array value: " + field);
}

void SqlElevated::Cont_LaunchSQlAdminProcess() {
  if (serves_request_) return;
  const std::string status_file = job_.installation().DataFile(sql_names::kLaunchStatusFile);
  if (support_.ReadFirstLine(status_file) != kRequested) return;
  serves_request_ = true;
  Serve();
  job_.machine().clock.Sleep(kSettleTime);
  support_.WriteLine(status_file, kServed);
  serves_request_ = false;
}

void SqlElevated::Serve() {
  const std::string command_file = job_.installation().DataFile(sql_names::kLaunchCommandFile);
  const std::string command = TrimAtTerminator(ReadCommand(command_file));
  const Machine& machine = job_.machine();
  Programs& programs = job_.services.programs;
  const ProcessHandle process =
      command.empty() ? kNoProcess : programs.StartCommandLine(command, job_.installation().WorkingFolder());
  StartedProgram tool{programs, sql_names::kTool, {machine.processes, process}};
  machine.clock.Sleep(kSettleTime);
  SleepAndPumpUntil(machine, kWatchPass, [&] { return StopOrEnd(tool); });
}

// What the file says runs with every right on the machine, so whoever lacks these rights may not say it.
std::string SqlElevated::ReadCommand(const std::string& file) {
  auto command = text_files_.ReadTrusted(file, Encoding::kCodePage);
  if (!command && job_.machine().files.Exists(file)) {
    job_.trace().plain().WriteTraceMain(
        file + " is not obeyed: it has to belong to the system, to the administrators or to the account of " +
        "this program.");
  }
  return std::move(command).value_or("");
}

// The tool learns of the stop from its status file and is not waited for any more.
bool SqlElevated::StopOrEnd(StartedProgram& tool) {
  if (!support_.StopAsked()) return !tool.IsRunning();
  const std::string folder = job_.installation().DataFile("OxWin\\");
  support_.WriteLine(folder + std::string{sql_names::kStatusFile}, sql_names::kStop);
  return true;
}

}  // namespace ondura
