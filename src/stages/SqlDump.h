#pragma once

#include <string>
#include <string_view>

#include "job/JobContext.h"
#include "schedule/BackupSetStore.h"
#include "stages/StageSupport.h"

namespace ondura {

// Makes the local dump of one database after another.
class DatabaseDump {
 public:
  virtual ~DatabaseDump() = default;

  // A false result ends the stage, as an abort by the user.
  virtual bool BackupToDisk(std::string_view database) = 0;
};

// Has the outside dump tool write `[<database>].dmp` into the temporary folder of the current user.
class SqlDump : public DatabaseDump {
 public:
  SqlDump(JobContext& job, StageSupport& support, BackupSetStore& backup_set);

  // Waits for the tool's end, however long it takes, and adds the dump's path to the backup-set collection
  // whether there is a dump or not. Only the stage's log says how it went: always true.
  bool BackupToDisk(std::string_view database) override;

 private:
  // What one run of the tool works with.
  struct Run {
    std::string database;  // in its brackets
    std::string user;
    std::string password;
    std::string server;
    std::string long_folder;  // of the dumps, as configured
    std::string folder;       // the same, 8.3
    std::string tool_folder;
    std::string status_folder;
  };

  Run Prepare(std::string_view database);
  std::string ReadSetting(const ProfileKey& key, std::string_view fallback);
  void WriteToolStatus(std::string_view word);
  void RemoveNamelessDump(const Run& run);
  void Announce(const Run& run, std::string_view database);
  StartedProgram Launch(const Run& run);
  void AddToBackupSet(const Run& run);
  void LogErrors();
  void LogLine(std::string_view text);

  JobContext& job_;
  StageSupport& support_;
  BackupSetStore& backup_set_;
  TextFiles text_files_;
};

}  // namespace ondura
