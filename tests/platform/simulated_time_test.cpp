#include "support/CheckedMachine.h"

namespace ondura {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kEngine = "C:\\Program Files\\Ondura\\Engine.exe";

TEST(SimulatedTime, ActionsActInOrderAtTheirOwnMomentsAndNoneThatSleepsItselfTurnsTheClockBack) {
  CheckedMachine house;
  std::vector<std::pair<int, std::chrono::milliseconds>> acts;
  const auto act = [&](int number) { return [&, number] { acts.emplace_back(number, house.Elapsed()); }; };
  house.After(20s, act(3));
  house.At(house.Now() + 10s, act(1));
  house.At(house.Now() + 10s, act(2));
  house.After(15s, [&] {
    house.machine().clock.Sleep(60s);
    act(4)();
  });
  house.After(76s, act(5));
  house.machine().clock.Sleep(30s);
  EXPECT_THAT(acts, ElementsAre(std::pair{1, 10s}, std::pair{2, 10s}, std::pair{3, 20s}, std::pair{4, 75s}));
  EXPECT_EQ(house.Now(), SimulatedMachine::kDefaultStart + 75s);
}

TEST(SimulatedTime, AnEndlessWaitThrowsInsteadOfHanging) {
  const std::pair<const char*, std::function<void(const Machine&)>> waits[] = {
      {"for a process that never started", [](const Machine& m) { m.processes.Wait(kNoProcess, 300ms); }},
      {"for a process that only shows signs of life",
       [](const Machine& m) {
         m.processes.Wait(4, 300ms);
         m.clock.Sleep(100ms);
       }},
      {"without a limit", [](const Machine& m) { m.clock.Sleep(24h * 500); }},
      {"by pumping alone", [](const Machine& m) { m.pump.Pump(); }}};
  for (const auto& [story, wait_once] : waits) {
    CheckedMachine house;
    house.SetPatience(24h * 400, 2000);
    house.InstallProgram(kEngine, [](ProgramRun& run) {
      run.NeverEnds();
      run.Every(1s, [] {});
    });
    house.outside().processes.Launch({kEngine, "", "", 0});
    const auto wait_for_ever = [&house, &wait = wait_once] {
      for (int pass = 0; pass < 10'000'000; ++pass) wait(house.machine());
    };
    EXPECT_THROW(wait_for_ever(), std::runtime_error) << story;
  }
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

TEST(SimulatedProcesses, AGuardedProcessCanNotBeOpenedAndIsInTheSnapshotAlone) {
  CheckedMachine house;
  Processes& processes = house.machine().processes;
  const ProcessId guarded = house.PutProcess("C:\\Windows\\guard.exe", SimulatedMachine::Access::kRefused);
  EXPECT_EQ(processes.OpenById(guarded, ProcessAccess::kQuery), kNoProcess);
  EXPECT_THAT(processes.List(ProcessSource::kModules), IsEmpty());
  EXPECT_EQ(processes.List(ProcessSource::kSnapshot).at(0).base_name, "guard.exe");
}

}  // namespace
}  // namespace ondura
