#pragma once

#include <functional>
#include <string>
#include <vector>

#include "scenarios/House.h"
#include "text/text.h"
#include "util/TextFiles.h"

namespace ondura {

// A house with one user whose Exchange job is due, and with stand-ins for the Exchange tools.
class ExchangeHouse : public DueHouse {
 public:
  static constexpr std::string_view kStoreTool = "C:\\ProgramData\\Ondura\\TolmeraProfExchBkp.exe";
  static constexpr std::string_view kStoreTool64 = "C:\\ProgramData\\Ondura\\TolmeraProf64ExchBkp.exe";
  static constexpr std::string_view kBrickTool = "C:\\ProgramData\\Ondura\\OxExchBrick.exe";

  ExchangeHouse(const std::string& recordno, const std::string& set_line) : DueHouse(Mailing(recordno)) {
    PutText("atbkupfolderlist.txt", "");
    machine.PutFile(UserPath("BackupSetData.txt"), set_line + "\r\n");
  }

  JobRun& run() { return Service().context().job.state.run; }

  // What the mail tells: it is sent after the job and is the only one to carry its code.
  std::string Code() { return LastMail().at(2); }

  // The bare name of a path in the folder Session.
  static std::string NameOf(const std::string& path) { return path.substr(path.rfind('\\') + 1); }

  // The time in the name of a session log.
  static std::string TimeOf(const std::string& path) { return path.substr(path.size() - 23, 19); }

  // The user's trace from the stage's entry to its leave or to the connection, without times and with "<log>"
  // for the job's session log.
  std::vector<std::string> StageTrace() {
    std::vector<std::string> lines;
    bool inside = false;
    for (std::string line : LinesOf(Text("ScheduleTraceFile.txt"))) {
      if (inside && line.find("Session File path ") != std::string::npos) break;
      if (inside && line.find("Sch_IPAddress") != std::string::npos) break;
      if (line.ends_with("  Waiting for the local backup")) continue;  // once a minute
      if (line.starts_with("11-14-2026 ")) line = "@" + line.substr(19);
      if (!run().session_path.empty()) line = ReplaceAll(line, run().session_path, "<log>");
      if (inside) lines.push_back(line);
      inside = inside || line.starts_with("Cont_SchBackup : schvTemp.recordno");
    }
    return lines;
  }

  // What a failed stage leaves behind, whatever it was. `trace` is how the stage's trace ends.
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
};

}  // namespace ondura
