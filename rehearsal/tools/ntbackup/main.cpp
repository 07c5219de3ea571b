// The operating system's backup tool on a machine for rehearsals: writes the backup file, the log and the
// registry entries that the client looks for, and shows the two windows that it hides.

#include <chrono>
#include <exception>
#include <iostream>

#include "engines/common/HostProcess.h"
#include "engines/common/ProgramMachine.h"
#include "engines/common/program.h"
#include "rehearsal/common/OwnWindows.h"
#include "rehearsal/common/SystemBackup.h"
#include "text/text.h"

namespace {

using namespace ondura;
using namespace ondura::engines;
using namespace ondura::rehearsal;
using std::chrono::milliseconds;

constexpr milliseconds kStep{50};
constexpr int kUsualMilliseconds = 1000;

// ntbackup.ini beside the program, section Rehearsal, says how the run goes.
class Rehearsal {
 public:
  explicit Rehearsal(const ChildMachine& child)
      : profiles_(child.owner->machine().profiles), file_(child.folder + "ntbackup.ini") {}

  milliseconds Duration() {
    return milliseconds{profiles_.ReadInt({file_, "Rehearsal", "Milliseconds"}, kUsualMilliseconds)};
  }

  SystemBackupOutcome Outcome() {
    const std::string text = profiles_.ReadString({file_, "Rehearsal", "Outcome"});
    if (EqualsIgnoringCase(text, "unverified")) return SystemBackupOutcome::kUnverified;
    return EqualsIgnoringCase(text, "nolog") ? SystemBackupOutcome::kWithoutLog
                                             : SystemBackupOutcome::kVerified;
  }

 private:
  ProfileFiles& profiles_;
  const std::string file_;
};

int Backup(const ChildMachine& child, const SystemBackupOrder& order) {
  const Machine& machine = child.owner->machine();
  Rehearsal rehearsal(child);
  const auto windows = ShowDialogs({kBackupProgressTitle, kSelectionTitle});
  for (milliseconds left = rehearsal.Duration(); left.count() > 0; left -= kStep) {
    windows->Pump();
    machine.clock.Sleep(kStep);
  }
  SystemBackup(machine).Run(order, rehearsal.Outcome());
  return kExitDone;
}

int Run(const std::vector<std::string>& words) {
  const ChildMachine child = MakeChildMachine();
  if (!child.owner) {
    std::cerr << "ntbackup: " << child.error << "\n";
    return kExitUnusable;
  }
  const auto order = ParseSystemBackup(words);
  if (!order) {
    std::cerr << "ntbackup: only 'backup systemstate /f FILE /J NAME' is known here\n";
    return kExitUnusable;
  }
  return Backup(child, *order);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(ParameterWords(argc, argv));
  } catch (const std::exception& failure) {
    std::cerr << "ntbackup: " << failure.what() << "\n";
    return kExitBroken;
  }
}
