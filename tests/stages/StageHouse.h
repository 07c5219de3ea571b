#pragma once

#include <regex>
#include <string>
#include <string_view>
#include <vector>

#include "scenarios/House.h"
#include "text/text.h"
#include "util/TextFiles.h"

namespace ondura {

// A house with one user whose job of one kind is due. Times are shown as "@", the job's session log as
// "<log>".
class StageHouse : public DueHouse {
 public:
  using DueHouse::DueHouse;

  JobRun& run() { return Service().context().job.state.run; }

  void PutBackupSet(const std::string& line) {
    machine.PutFile(UserPath("BackupSetData.txt"), line + "\r\n");
  }

  void UserStops() { WriteProfile("BackupStatus", "Status", "5"); }

  // What the mail says: it is sent after the job, and only it carries the job's code.
  std::string Code() { return LastMail().at(2); }

  static std::string WithoutTimes(const std::string& text) {
    static const std::regex kTime(R"(\d\d-\d\d-\d{4} \d\d([-:])\d\d\1\d\d)");
    return std::regex_replace(text, kTime, "@");
  }

  // The user's trace.
  std::vector<std::string> Trace() {
    std::vector<std::string> lines;
    for (std::string line : LinesOf(Text("ScheduleTraceFile.txt"))) {
      if (!run().session_path.empty()) line = ReplaceAll(line, run().session_path, "<log>");
      lines.push_back(WithoutTimes(line));
    }
    return lines;
  }

  // The part of the trace between the stage's entry and its exit or the connection.
  std::vector<std::string> StageTrace() {
    std::vector<std::string> lines;
    bool inside = false;
    for (const std::string& line : Trace()) {
      if (inside && (Has(line, "Session File path ") || Has(line, "Sch_IPAddress"))) break;
      if (line == "@  Waiting for the local backup") continue;  // once a minute
      if (inside) lines.push_back(line);
      inside = inside || line.starts_with("Cont_SchBackup : schvTemp.recordno");
    }
    return lines;
  }

  // The one session file.
  std::string SessionLog() {
    const auto files = SessionFiles();
    if (files.size() != 1) return "<" + std::to_string(files.size()) + " session files>";
    return WithoutTimes(Text(files.front().substr(UserPath("").size() + 1)));
  }

  // The session log of a job that has failed.
  static std::string FailedLog(const std::string& result_text, const std::string& total_time) {
    return " \r\nUsername: ann\r\nOperation: Scheduled\r\n@  " + result_text + "\r\n" + total_time;
  }

  // What a failed stage leaves, whatever it was. `trace` is how the stage's trace ends.
  void ExpectFailedEnd(const std::string& code, const std::string& result_text, const std::string& trace) {
    EXPECT_THAT(Join(StageTrace(), "\n"), testing::EndsWith(trace));
    EXPECT_EQ(Code(), code);
    EXPECT_EQ(run().result_text, result_text);
    EXPECT_EQ(StatusAfterJob(), "3");
    EXPECT_EQ(Status("DLLStatus"), "3");
    EXPECT_THAT(run().items, testing::IsEmpty());
    EXPECT_THAT(Commands(), testing::IsEmpty());
    EXPECT_EQ(machine.OpenHandles(), 0U);
    EXPECT_EQ(NextTime(), kTomorrow);
  }

  // The same with the session log that most stages write, and the word for the user interface.
  void ExpectFailedEnd(const std::string& code, const std::string& result_text, const std::string& trace,
                       const std::string& total_time) {
    ExpectFailedEnd(code, result_text, trace);
    EXPECT_EQ(SessionLog(), FailedLog(result_text, total_time));
    EXPECT_EQ(Text("SchStatus.txt"), "View the log to know the status of the backup job.\r\n");
  }

 private:
  static bool Has(const std::string& line, std::string_view part) {
    return line.find(part) != std::string::npos;
  }
};

}  // namespace ondura
