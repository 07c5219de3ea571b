#pragma once

#include <functional>

#include "machines/posix/command_line.h"
#include "rehearsal/common/SystemBackup.h"
#include "stages/StageHouse.h"

namespace ondura {

// A house whose user has a due job for the System State, and the operating system's backup tool.
class SystemStateHouse : public StageHouse {
 public:
  static constexpr std::string_view kDump = "C:\\Dump State";
  static constexpr std::string_view kTool = "C:\\Windows\\system32\\ntbackup.exe";

  SystemStateHouse() : StageHouse(Mailing("3")) {
    using namespace std::chrono_literals;
    PutBackupSet("OXSYSTEMSTATEBACKUP;" + std::string{kDump} + "\\");
    InstallTool(5s, rehearsal::SystemBackupOutcome::kVerified);
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

  // How often a window of the tool was hidden when the tool looked at it.
  int times_hidden = 0;

  std::string StageLog() { return WithoutTimes(Bytes("STBTraceFile.txt")); }

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
