#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "job/JobContext.h"
#include "job/Stage.h"
#include "stages/StageSupport.h"
#include "stages/clsSystemState.h"

namespace ondura {

// Jobs of kind "3": the System State of Windows, dumped into one file that the transfer takes along.
class SystemStateStage : public Stage {
 public:
  SystemStateStage(JobContext& job, StageSupport& support, clsSystemState& system_state)
      : job_(job), support_(support), system_state_(system_state) {}

  Leave Run(JobState& state) override;
  std::vector<SelectedItem> Items(JobState& state) override;

 private:
  std::string FindFolder();
  void Announce();
  JobCode LeaveWithoutAccess();
  void Dump();
  Leave LeaveWhenStopped(JobState& state);
  void WriteStageLog(std::string_view text, int kind);

  JobContext& job_;
  StageSupport& support_;
  clsSystemState& system_state_;
  std::string sysStatePath_;
};

}  // namespace ondura
