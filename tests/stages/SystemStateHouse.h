#pragma once

#include <functional>
#include <regex>
#include <string>
#include <vector>

#include "machines/posix/command_line.h"
#include "rehearsal/common/SystemBackup.h"
#include "scenarios/House.h"
#include "text/text.h"
#include "util/TextFiles.h"

namespace ondura {

// A house whose user has a due job for the System State, and the operating system's backup tool.
class SystemStateHouse : public DueHouse {
 public:
  static constexpr std::string_view kDump = "C:\\Dump State";
  static constexpr std::string_view kTool = "C:\\Windows\\system32\\ntbackup.exe";

  SystemStateHouse() : DueHouse(Mailing("3")) {
    using namespace std::chrono_literals;
    PutBackupSet("OXSYSTEMSTATEBACKUP;" + std::string{kDump} + "\\");
    InstallTool(5s, rehearsal::SystemBackupOutcome::kVerified);
  }

  void PutBackupSet(const std::string& line) {
    machine.PutFile(UserPath("BackupSetData.txt"), line + "\r\n");
  }

  // A tool that shows its windows every second anew and leaves what it leaves when `lifetime` is over.
  using Action = std::function<void(ProgramRun&)>;
  void InstallTool(std::chrono::milliseconds lifetime, rehearsal::SystemBackupOutcome outcome,
                   const Action& meanwhile = {}) {
    machine.InstallProgram(kTool, [this, lifetime, outcome, meanwhile](ProgramRun& run) {
      using namespace std::chrono_literals;
      ShowWindows(run);
      run.Every(1s, [this, &run] { ShowWindows(run); });
      run.OnTerminated([this] { RemoveWindows(); });
      if (meanwhile) run.After(lifetime / 2, [&run, meanwhile] { meanwhile(run); });
      run.After(lifetime, [this, &run, outcome] {
        RemoveWindows();
        const auto order = rehearsal::ParseSystemBackup(SplitCommandLine(run.parameters()));
        ASSERT_TRUE(order.has_value()) << run.parameters();
        rehearsal::SystemBackup(machine.outside()).Run(*order, outcome);
      });
    });
  }

  // How often a window of the tool stood hidden when the tool looked after it.
  int times_hidden = 0;

  std::string StageLog() { return WithoutTimes(Bytes("STBTraceFile.txt")); }

  // The one session file, with its times left out.
  std::string SessionLog() {
    const auto files = SessionFiles();
    if (files.size() != 1) return "<" + std::to_string(files.size()) + " session files>";
    return WithoutTimes(Text(files.front().substr(UserPath("").size() + 1)));
  }

  // The user's trace from the first line that has `first` to the next one that has `last`.
  std::vector<std::string> TraceLines(std::string_view first, std::string_view last) {
    std::vector<std::string> lines;
    for (const std::string& line : LinesOf(Text("ScheduleTraceFile.txt"))) {
      if (lines.empty() && line.find(first) == std::string::npos) continue;
      lines.push_back(WithoutTimes(line));
      if (line.find(last) != std::string::npos) break;
    }
    return lines;
  }

  static std::string WithoutTimes(const std::string& text) {
    static const std::regex kTime(R"(\d\d-\d\d-\d{4} \d\d([-:])\d\d\1\d\d)");
    return std::regex_replace(text, kTime, "@");
  }

  // What the job hands the engine.
  std::string Selected() { return Text("TempCom\\CompareListInput1.txt"); }

 private:
  void ShowWindows(ProgramRun& run) {
    auto& windows = machine.surroundings().windows;
    for (const auto& [window, title] : {std::pair{WindowHandle{11}, rehearsal::kBackupProgressTitle},
                                        {WindowHandle{12}, rehearsal::kSelectionTitle}}) {
      if (windows.contains(window) && !windows[window].is_shown) ++times_hidden;
      windows[window] = {run.id(), "#32770", std::string{title}, true, {}};
    }
  }

  void RemoveWindows() { machine.surroundings().windows.clear(); }
};

}  // namespace ondura
