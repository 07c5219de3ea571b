#include "support/checked_machine.h"

namespace ondura {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kEngine = "C:\\Program Files\\Ondura\\Engine.exe";
constexpr const char* kProfile = "C:\\data\\x.ini";

TEST(SimulatedProcesses, AProgramWorksWhileTheComponentWaitsForItAndStopsTheWaitAtItsEnd) {
  CheckedMachine house;
  house.InstallProgram(kEngine, [](ProgramRun& run) {
    run.After(200ms, [&run] { run.machine().WriteIni(kProfile, "BackupStatus", "RetValue", "402"); });
    run.ExitAfter(450ms, 7);
  });
  Processes& processes = house.machine().processes;
  const ProcessHandle engine = processes.Launch({kEngine, " 51<\\a b>", "C:\\data", 0});
  EXPECT_EQ(processes.Wait(engine, 100ms), ProcessWait::kTimedOut);
  EXPECT_EQ(house.ReadIni(kProfile, "BackupStatus", "RetValue"), "");
  EXPECT_EQ(processes.Wait(engine, 300ms), ProcessWait::kTimedOut);
  EXPECT_EQ(house.ReadIni(kProfile, "BackupStatus", "RetValue"), "402");
  EXPECT_EQ(processes.ExitCode(engine), kStillActive);
  EXPECT_EQ(processes.Wait(engine, 300ms), ProcessWait::kEnded);
  EXPECT_EQ(house.Elapsed(), 450ms);
  EXPECT_EQ(processes.ExitCode(engine), 7U);
  EXPECT_THAT(house.CallsMatching("Processes.Launch"),
              ElementsAre("Processes.Launch C:\\Program Files\\Ondura\\Engine.exe  51<\\a b>"));
}

TEST(SimulatedProcesses, AnEndedProgramDoesNothingMore) {
  for (const bool is_terminated : {true, false}) {
    CheckedMachine house;
    std::vector<std::string> acts;
    house.InstallProgram(kEngine, [&](ProgramRun& run) {
      run.Every(1s, [&] { acts.emplace_back("beat"); });
      run.ExitAfter(5s, 0);
      run.OnTerminated([&] {
        acts.emplace_back("terminated");
        run.After(1s, [&] { acts.emplace_back("late"); });
      });
    });
    Processes& processes = house.machine().processes;
    const ProcessHandle engine = processes.Launch({kEngine, "", "", 0});
    house.Advance(1500ms);
    if (is_terminated) {
      EXPECT_TRUE(processes.Terminate(engine, 9));
    } else {
      house.EndProcess(processes.IdOf(engine), 9);
    }
    house.Advance(10s);
    EXPECT_EQ(acts.size(), is_terminated ? 2U : 1U);
    EXPECT_EQ(processes.ExitCode(engine), 9U);
    EXPECT_FALSE(processes.Terminate(engine, 1)) << "it had ended already";
    EXPECT_THAT(processes.List(ProcessSource::kModules), IsEmpty());
  }
}

TEST(SimulatedProcesses, AGuardedProcessIsNeitherListedNorOpened) {
  CheckedMachine house;
  Processes& processes = house.machine().processes;
  const ProcessId guarded = house.PutProcess("C:\\Windows\\guard.exe", SimulatedMachine::Access::kRefused);
  EXPECT_EQ(processes.OpenById(guarded, ProcessAccess::kQuery), kNoProcess);
  EXPECT_THAT(processes.List(ProcessSource::kModules), IsEmpty());
}

TEST(SimulatedProcesses, AMutexThatAnotherProcessHoldsCostsTheWholeWait) {
  CheckedMachine house;
  NamedMutexes& mutexes = house.machine().mutexes;
  house.HoldMutex("Global\\scan");
  const MutexHandle handle = mutexes.Create("Global\\scan");
  EXPECT_FALSE(mutexes.Wait(handle, 1s));
  EXPECT_EQ(house.Elapsed(), 1s);
  house.After(300ms, [&] { house.LetGoOfMutex("Global\\scan"); });
  EXPECT_TRUE(mutexes.Wait(handle, 1s));
  EXPECT_EQ(house.Elapsed(), 1300ms);
}

}  // namespace
}  // namespace ondura
