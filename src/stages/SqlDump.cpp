#include "stages/SqlDump.h"

#include <array>

#include "reporting/stage_log.h"
#include "stages/sql_names.h"
#include "text/text.h"

namespace ondura {

namespace {

using std::chrono::milliseconds;

constexpr std::string_view kNoText = "\"\"";
constexpr std::string_view kOwnServer = "(local)";
constexpr std::string_view kDefaultFolder = "SQLTEMP";
constexpr milliseconds kToolPause{2};
constexpr milliseconds kAfterTool{10000};

// The last four arguments of the tool: bare names of files that the two share.
constexpr std::array<std::string_view, 4> kToolFiles{"SQLBackupLog.txt", sql_names::kErrorFile,
                                                     sql_names::kStatusFile, "SQLBackupTraceFile.txt"};

std::string Quoted(std::string_view text) { return "\"" + std::string{text} + "\""; }

std::string DumpPath(std::string_view folder, std::string_view bracketed_name) {
  return WithBackslash(folder).append(bracketed_name).append(".dmp");
}

std::string OutcomeText(std::string_view beginning, std::string_view database, std::string_view folder) {
  return std::string{beginning} + std::string{database} + "' to '" + std::string{folder} + "' ";
}

}  // namespace

SqlDump::SqlDump(JobContext& job, StageSupport& support, BackupSetStore& backup_set)
    : job_(job),
      support_(support),
      backup_set_(backup_set),
      text_files_(job.machine().files, job.machine().code_page) {}

bool SqlDump::BackupToDisk(std::string_view database) {
  const Run run = Prepare(database);
  WriteToolStatus(sql_names::kRunning);
  RemoveNamelessDump(run);
  Announce(run, database);
  StartedProgram tool = Launch(run);
  support_.WaitUntilGone(tool, kToolPause);
  job_.machine().clock.Sleep(kAfterTool);
  WriteToolStatus(sql_names::kIdle);
  AddToBackupSet(run);
  if (job_.machine().files.Exists(DumpPath(run.folder, run.database))) {
    LogLine(OutcomeText("Successfully completed the backup of database '", database, run.folder));
  }
  LogErrors();
  return true;
}

SqlDump::Run SqlDump::Prepare(std::string_view database) {
  const Installation& installation = job_.installation();
  Run run;
  run.database = "[" + std::string{database} + "]";
  run.user = ReadSetting(profile_keys::kSqlUser, kNoText);
  run.password = ReadSetting(profile_keys::kSqlPassword, kNoText);
  run.server = job_.services.transfer.Trf_ReadUserProfile(profile_keys::kSqlServer);
  if (Trim(run.server).empty()) run.server = kOwnServer;
  run.long_folder = ReadSetting(profile_keys::kSqlTemp, installation.DataFile(kDefaultFolder));
  support_.Remove(installation.UserFile(sql_names::kErrorFile));
  support_.MakeFolder(run.long_folder);
  run.folder = support_.ShortPath(run.long_folder);
  run.tool_folder = WithBackslash(support_.ShortPath(installation.VirtualPath));
  const std::string status_folder = installation.DataFile(sql_names::kStatusFolder);
  support_.MakeFolder(status_folder);
  run.status_folder = support_.ShortPath(status_folder);
  return run;
}

std::string SqlDump::ReadSetting(const ProfileKey& key, std::string_view fallback) {
  std::string value = job_.services.transfer.Trf_ReadUserProfile(key);
  return value.empty() ? std::string{fallback} : value;
}

void SqlDump::WriteToolStatus(std::string_view word) {
  const std::string folder = job_.installation().DataFile(sql_names::kStatusFolder);
  support_.WriteLine(folder + "\\" + std::string{sql_names::kStatusFile}, word);
}

// A dump that a tool without a database has left. An earlier dump of this database stays where it is until
// the tool writes over it.
void SqlDump::RemoveNamelessDump(const Run& run) { support_.Remove(DumpPath(run.folder, "[]")); }

// The line that is traced has quotes for its reader; the tool gets none.
void SqlDump::Announce(const Run& run, std::string_view database) {
  const std::string started = OutcomeText("Started backup of database '", database, run.folder);
  LogLine(started);
  const std::string tool = Quoted(run.tool_folder + std::string{sql_names::kTool} + " ");
  const std::string arguments = "1 " + Quoted(run.server) + " " + Quoted(run.database) + " " + run.user +
                                " " + run.password + " " + Quoted(run.folder) + " " +
                                Quoted(run.status_folder);
  job_.trace().User(" SQL Cmdline : " + tool + arguments + " " +
                    Join({kToolFiles.begin(), kToolFiles.end()}, " "));
  job_.trace().plain().WriteTrace(started);
}

StartedProgram SqlDump::Launch(const Run& run) {
  const std::string parameters = "1 " + run.server + " " + run.database + " " + run.user + " " +
                                 run.password + " " + run.folder + " " + run.status_folder + " " +
                                 Join({kToolFiles.begin(), kToolFiles.end()}, " ");
  const JobServices& services = job_.services;
  const ProcessHandle tool =
      services.programs.LaunchHidden(run.tool_folder + std::string{sql_names::kTool} + " ", parameters,
                                     services.installation.WorkingFolder(), 0);
  return {job_.services.programs, sql_names::kTool, {services.machine.processes, tool}};
}

void SqlDump::AddToBackupSet(const Run& run) {
  const std::string path = DumpPath(run.long_folder, run.database);
  if (job_.services.facts.IsVistaFamily()) {
    text_files_.Append(job_.installation().DataFile(sql_names::kDumpList), path + std::string{kLineEnd},
                       Encoding::kCodePage, IfMissing::kCreate);
  }
  backup_set_.BackupSetLines.push_back(path);
}

// An error file without text says that something went wrong as well.
void SqlDump::LogErrors() {
  const std::string path = job_.installation().UserFile(sql_names::kErrorFile);
  if (!job_.machine().files.Exists(path)) return;
  const std::string text = text_files_.Read(path, Encoding::kCodePage).value_or("");
  std::string line = "Error while local backup of database :   ";
  if (!Trim(text).empty()) line.append(kLineEnd).append(text);
  LogLine(line);
}

// Every line of the dump has this one severity, also that of an error.
void SqlDump::LogLine(std::string_view text) {
  WriteStageLogLine(job_.machine(), job_.installation().UserFile(sql_names::kStageLog), text,
                    kStageInformation);
}

}  // namespace ondura
