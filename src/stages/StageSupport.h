#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "job/JobContext.h"
#include "reporting/LifeSign.h"
#include "schedule/BackupSetStore.h"
#include "util/StartedProgram.h"
#include "util/TextFiles.h"
#include "util/waits.h"

namespace ondura {

// The last line of a failed stage's session log, after the block of four lines.
enum class TotalTime {
  kNone,        // no such line
  kLabel,       // the label and a colon alone
  kDifference,  // the label and how long the stage took, with nothing between them
};

// How a stage reports its failure.
struct StageFailure {
  std::string log_trace;    // for the user's trace, in front of the session log's path
  std::string result_text;  // the job's result text, also the message of the session log
  TotalTime total_time = TotalTime::kNone;
};

// What the stages of application data share.
class StageSupport {
 public:
  StageSupport(JobContext& job, BackupSetStore& backup_set);

  // The start of a stage, also of one that is refused at once: total times count from here.
  void Begin();

  // The kind of job as the mail names it, with a blank at both ends.
  void SetLabel(std::string_view label) { job_.state.run.kind_word = label; }

  // Status "1" and the stage's own RetValue.
  void WriteEntryKeys(EngineResult result);

  // Tells whoever follows the job what it is doing now: a line of the user's trace.
  void Notify(std::string_view text);

  // Sleeps, then pumps messages once. A long wait is made of many of these and stays to be seen.
  void SleepAndPump(std::chrono::milliseconds pause);

  // For waits that don't go through SleepAndPump.
  void ShowLife() { life_.Show(); }

  // Reads the backup set and gives the fields of the stage's line: the line that begins with the keyword,
  // of several the last, split at ";". Empty if there is no such line. FieldCounts says which of the fields
  // stand for data.
  std::vector<std::string> ReadBackupSetFields(std::string_view keyword);
  // The same for the lines as they are in memory.
  [[nodiscard]] std::vector<std::string> FindBackupSetFields(std::string_view keyword) const;
  // True for a field that is neither blank nor the keyword itself.
  static bool FieldCounts(std::string_view field, std::string_view keyword);

  // From here on the collection takes what the stage dumps.
  void EmptyBackupSet();

  // Makes the folder unless it exists; false if it does not exist afterwards.
  bool MakeFolder(std::string_view path);

  // The 8.3 form; the text as it is for a path that does not exist.
  std::string ShortPath(std::string_view path);

  // Makes and deletes a test file whose name follows the folder's text with nothing between them: without a
  // backslash at its end it is the folder's neighbour. False when the file could not be made.
  bool CanWriteTo(std::string_view folder);

  // Sleeps, pumps messages and looks for the program until it is gone. Looks at least once.
  void WaitUntilGone(StartedProgram& program, std::chrono::milliseconds pause);
  // Another program's run of the tool goes first: looks for it again and again, without a pause, until it
  // is gone.
  void LetToolEnd(std::string_view program);

  // The user interface or the host asks for the end of the job.
  bool StopAsked();

  // Replaces a status file, or makes it, with one line in the system code page.
  void WriteLine(std::string_view path, std::string_view line);
  // The trimmed first line; empty if there is no file.
  std::string ReadFirstLine(std::string_view path);
  void Remove(std::string_view path);

  // Sets the job's result text and session log, and writes trace and log.
  void RecordFailure(const StageFailure& failure);
  // Status and DLLStatus "3", the job's end routine, and the items dropped. Returns the code.
  JobCode EndFailed(JobCode code);
  // Both in one.
  JobCode LeaveFailed(const StageFailure& failure, JobCode code);

 private:
  [[nodiscard]] std::string TotalTimeLine(TotalTime kind) const;

  JobContext& job_;
  BackupSetStore& backup_set_;
  TextFiles text_files_;
  LocalTime started_;
  LifeSign life_;
};

}  // namespace ondura
