#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "job/JobContext.h"
#include "job/Stage.h"
#include "stages/StageSupport.h"
#include "util/TextFiles.h"
#include "util/waits.h"

namespace ondura {

// Record "4": Exchange storage groups. An outside tool dumps the selected groups into a local folder, which
// then goes to the server as one item.
class ExchangeStoreStage : public Stage {
 public:
  ExchangeStoreStage(JobContext& job, StageSupport& support);

  Leave Run(JobState& state) override;
  std::vector<SelectedItem> Items(JobState& state) override;

  // Appends a storage group to the list that the tool reads.
  void WriteExchangeBackupSet(std::string_view sLine);

  // How many storage groups the tool's last result describes; 0 without a result.
  std::int32_t FindStorageGroupCount();

 private:
  void Enter();
  void SettleFolder();
  std::vector<std::string> ReadGroups();
  void WriteGroups(const std::vector<std::string>& groups);
  void WriteRunning();
  ProcessWatch LaunchTool();
  void WaitForTool(ProcessWatch& tool);
  void CopyResult();
  void WaitUntilFolderRests();
  void ReadToolStatus();
  JobCode LeaveWithoutFolder();
  JobCode LeaveUnwritable();
  JobCode LeaveCancelled();
  JobCode LeaveToolAborted();

  std::string& folder() { return job_.state.run.APIEXCHANGE; }
  std::string UserFile(std::string_view name) const { return job_.installation().UserFile(name); }
  std::string LongFolder(std::string_view path);

  JobContext& job_;
  StageSupport& support_;
  TextFiles text_files_;
  bool cancelled_ = false;
  bool tool_aborted_ = false;
};

}  // namespace ondura
