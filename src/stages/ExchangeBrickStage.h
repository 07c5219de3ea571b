#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "job/JobContext.h"
#include "job/Stage.h"
#include "reporting/ErrorTextSlot.h"
#include "stages/StageSupport.h"
#include "util/TextFiles.h"

namespace ondura {

// Record "5": single Exchange mailboxes. An outside tool exports them into a subfolder of a local folder, and
// the subfolder goes to the server as one item. The stage keeps two session logs, the job's own and one that
// the tool writes to.
class ExchangeBrickStage : public Stage {
 public:
  ExchangeBrickStage(JobContext& job, StageSupport& support, ErrorTextSlot& error_text);

  Leave Run(JobState& state) override;
  std::vector<SelectedItem> Items(JobState& state) override;

  // A setting in the tool's ini file. A write that fails is traced and lost.
  void WriteExchBrickProfile(std::string_view sKey, std::string_view sValue);

  // The trimmed first line; empty if there is no file.
  std::string ReadFirstBit(std::string_view sPath);

  // Takes over what the tool's status file says: "2" cancelled, "3" failed. The stage itself calls it with
  // `nMode` 0; any other mode marks the job alone.
  void CheckForExchBrickCancel(int nMode);

 private:
  void Begin();
  void MakeLogs();
  std::string SettleFolder();
  bool ReadMailboxes();
  void Export(const std::string& folder);
  void WriteSettings(const std::string& folder);
  void PrepareRun(const std::string& folder);
  StartedProgram LaunchTool();
  void WaitForTool(StartedProgram& tool);
  void Stop();
  void TakeOverResult(const std::string& folder);
  JobCode LeaveWithoutFolder();
  JobCode LeaveUnwritable();
  JobCode LeaveCancelled();
  JobCode LeaveBroken();
  JobCode LeaveWith(std::string_view result_text);

  std::string UserFile(std::string_view name) const { return job_.installation().UserFile(name); }
  std::string StatusFile() const;
  std::string TimedLine(std::string_view text);
  void AppendTo(const std::string& log, std::string_view line);
  std::string RelativeLogPath(std::string_view log) const;

  JobContext& job_;
  StageSupport& support_;
  ErrorTextSlot& error_text_;
  TextFiles text_files_;
  std::string main_log_;
  std::string tool_log_;
  bool cancelled_ = false;
  bool failed_ = false;
};

}  // namespace ondura
