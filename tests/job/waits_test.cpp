// The waits for the engine: what ends them early, after how long, and the signs of life in between.

#include <gmock/gmock.h>

#include "job/TransferWait.h"
#include "job_house.h"

namespace ondura {
namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;
using Killed = std::optional<milliseconds>;

// A transfer that ends by itself after a minute.
struct WaitHouse : RoadHouse {
  WaitHouse() {
    OnCommand(51, [this](ProgramRun& run) {
      run.OnTerminated([this] { killed = machine.Elapsed(); });
      run.ExitAfter(60s, 0);
    });
    for (const char* key : {"Status", "ProgStatus"}) SetStatus(key, "7");
  }
  TransferWait::End Wait() {
    auto& run = job.state.run;
    machine.InstallProgram(kManager, [](ProgramRun& manager) { manager.NeverEnds(); });
    run.database_manager.emplace(ports.processes, programs.LaunchHidden(kManager, "", "", 0));
    run.lDBManagerPID = programs.WhatsMyProcessID(run.database_manager->handle());
    run.engine = job.engine.StartTransfer();
    run.lClsClientPID = programs.WhatsMyProcessID(run.engine->handle());
    return TransferWait(job, abort).Run(*run.engine);
  }
  std::string Keys() { return Status("Status") + " " + Status("ProgStatus") + " " + Status("Cancel"); }

  Killed killed;
};

TEST(CancelTest, KillsAtTheFourthPassAndCountsOnAfterARequestThatWasTakenBack) {
  using Row = std::tuple<const char*, std::vector<std::pair<milliseconds, const char*>>, Killed, int>;
  for (const auto& [story, changes, killed, failed_kills] :
       {Row{"three passes", {{0ms, "1"}, {7s, "0"}}, std::nullopt, 0}, Row{"four", {{0ms, "1"}}, 9200ms, 0},
        Row{"three, taken back, and one more", {{0ms, "1"}, {7s, "0"}, {20s, "1"}}, 22200ms, 0},
        Row{"an engine that survives gets four more", {{0ms, "1"}, {10s, "1"}}, 18400ms, 1},
        Row{"another word", {{0ms, "2"}}, std::nullopt, 0}}) {
    WaitHouse house;
    for (const auto& [at, value] : changes) {
      house.machine.After(at, [&house, text = value] { house.SetStatus("Cancel", text); });
    }
    if (failed_kills > 0) house.machine.Fail("Processes.Terminate", failed_kills);
    EXPECT_EQ(house.Wait(), TransferWait::End::kByItself) << story;
    EXPECT_EQ(house.killed, killed) << story;
    EXPECT_EQ(house.Keys(), killed ? "0 0 0" : std::string{"7 7 "} + changes.back().second) << story;
    EXPECT_TRUE(failed_kills > 0 || house.machine.IsRunning("OnduraSDBManager.exe") == !killed) << story;
  }
}

TEST(CutOffTest, KillsAtTheTwentyFirstPassWithinTheTenMinutes) {
  const auto at = [](int hour, int minute, int second) {
    return ToLocalTime({2026, 11, 14, hour, minute, second});
  };
  using Row = std::tuple<const char*, LocalTime, const char*, Killed, bool>;
  for (const auto& [story, now, stop, killed, cut_off] :
       {Row{"at the minute", at(12, 30, 40), "11-14-2026 12:30:00", std::nullopt, true},
        Row{"at the minute, for 21 passes", at(12, 30, 0), "11-14-2026 12:30:00", 27300ms, true},
        Row{"later in the ten minutes", at(12, 35, 0), "11-14-2026 12:31:00", 27300ms, true},
        Row{"from the minute on into the ten", at(12, 30, 50), "11-14-2026 12:30:00", 27300ms, true},
        Row{"still to come in the ten minutes", at(12, 30, 0), "11-14-2026 12:35:00", std::nullopt, false},
        Row{"over", at(12, 40, 0), "11-14-2026 12:31:00", std::nullopt, false},
        Row{"midnight passes before a look", at(23, 59, 59), "11-14-2026 23:59:00", std::nullopt, false},
        Row{"midnight passes after some looks", at(23, 59, 50), "11-14-2026 23:59:00", std::nullopt, true}}) {
    WaitHouse house;
    house.machine.SetNow(now);
    house.transfer.Trf_WriteUserNameRegistryProfile("StopSchedule", "1");
    house.transfer.Trf_WriteUserNameRegistryProfile("StopScheduleTime", stop);
    // The first row's engine obeys.
    if (house.machine.Now() == at(12, 30, 40)) {
      house.OnCommand(51, [&](ProgramRun& run) { run.ExitAfter(15s, 0); });
    }
    EXPECT_EQ(house.Wait() == TransferWait::End::kCutOff, cut_off) << story;
    EXPECT_EQ(house.killed, killed) << story;
    EXPECT_EQ(house.Keys(), killed ? "0 0 " : cut_off ? "10 7 " : "7 7 ") << story;
    EXPECT_EQ(house.machine.IsRunning("OnduraSDBManager.exe"), !killed) << story;
  }
}

TEST(PortWaitTest, GivesUpAfterThreeHundredPasses) {
  RoadHouse house;
  house.machine.RemoveProgram(RoadHouse::kEngine);
  EXPECT_EQ(house.job.engine.RunPortNumber(" 24<>"), PortWait::kGaveUp);
  EXPECT_EQ(house.machine.Elapsed(), 300 * 1300ms + 1s);
}

// There is no engine any more once it has answered this command.
std::function<void(RoadHouse&)> NoEngineAfter(int command) {
  return [=](RoadHouse& house) {
    house.OnCommand(command, [&house](ProgramRun& run) {
      house.Answer(run, 402, 2s, [&house] { house.machine.RemoveProgram(RoadHouse::kEngine); });
    });
  };
}

// A user's trace that is fresh tells the other host that a job without an engine is alive.
TEST(LifeTest, NoWaitOfAJobIsSilentForTwoMinutes) {
  using Row = std::tuple<const char*, const char*, std::function<void(RoadHouse&)>>;
  for (const auto& [story, method, arrange] :
       {Row{"no engine for 24 and 51", "0",
            [](RoadHouse& house) { house.machine.RemoveProgram(RoadHouse::kEngine); }},
        Row{"no engine for 28", "1", NoEngineAfter(24)}, Row{"no engine for 16", "0", NoEngineAfter(51)},
        Row{"another program's scan", "1",
            [](RoadHouse& house) {
              house.SetProfile("REALTIME", "WatcherStatus", "1");
              house.SetProfile("REALTIME", "scanStatus", "1");
            }},
        Row{"a scan of the job's own", "1",
            [](RoadHouse& house) {
              house.SetProfile("REALTIME", "WatcherStatus", "1");
              house.machine.InstallProgram("C:\\exe\\OxScan.exe", [](ProgramRun& run) { run.NeverEnds(); });
            }},
        Row{"a walk of ten minutes", "0", [](RoadHouse& house) {
              for (int i = 0; i < 12; ++i) {
                house.machine.PutFile("C:\\Docs\\" + std::to_string(i) + ".txt", "x");
              }
              house.machine.OnPump([&house] {
                if (!house.commands.empty() && house.commands.back() == 51) house.machine.Advance(50s);
              });
            }}}) {
    SCOPED_TRACE(story);
    RoadHouse house;
    house.transfer.Trf_WriteUserNameDBProfile("DB", method);
    arrange(house);
    bool is_over = false;
    std::chrono::seconds longest{0};
    std::function<void()> look = [&] {
      const auto written = house.ports.files.Modified(house.UserFile("ScheduleTraceFile.txt"));
      longest = std::max(longest, house.machine.Now() - *written);
      if (!is_over) house.machine.After(10s, look);
    };
    house.machine.After(10s, look);
    house.machine.After(20min, [&] {
      house.SetStatus("Cancel", "1");
      house.SetStatus("Status", "5");
    });
    house.Run();
    is_over = true;
    EXPECT_LT(longest, 2min);
    EXPECT_GT(house.machine.Elapsed(), 9min);
  }
}

}  // namespace
}  // namespace ondura
