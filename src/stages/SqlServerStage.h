#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "job/JobContext.h"
#include "job/Stage.h"
#include "schedule/BackupSetStore.h"
#include "stages/SqlDump.h"
#include "stages/StageSupport.h"

namespace ondura {

// SQL Server databases, record "2". Where the job has the rights for it, it dumps the databases itself; on
// Vista and its successors an elevated host does, and the job waits for it until it is stopped. A host that
// does not answer is told of after ten minutes.
class SqlServerStage : public Stage {
 public:
  SqlServerStage(JobContext& job, StageSupport& support, BackupSetStore& backup_set, DatabaseDump& dump)
      : job_(job), support_(support), backup_set_(backup_set), dump_(dump) {}

  Leave Run(JobState& state) override;

  // The folder where the elevated host has dumped, or each dump, also one that is missing. Never empty.
  std::vector<SelectedItem> Items(JobState& state) override;

 private:
  JobCode RefuseWithoutFolder();
  JobCode RefuseWithoutAccess();
  JobCode LeaveAborted();
  std::vector<std::string> ReadFields();
  bool WaitForElevatedHost();
  void WithdrawRequest();
  void ReportSilence();
  bool DumpDatabases(const std::vector<std::string>& fields);
  void TraceDump(const std::string& path);

  JobContext& job_;
  StageSupport& support_;
  BackupSetStore& backup_set_;
  DatabaseDump& dump_;
};

}  // namespace ondura
