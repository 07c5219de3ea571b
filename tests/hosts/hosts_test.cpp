#include <gmock/gmock.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <stdexcept>

#include "SoleHost.h"
#include "TickReport.h"
#include "hosts.h"
#include "scenarios/House.h"
#include "text/text.h"
#include "text/utf16.h"
#include "tick_loop.h"

namespace ondura {
namespace {

using testing::HasSubstr;

class HostsTest : public testing::Test {
 protected:
  static std::string Data(std::string_view name) { return std::string{House::kData} + std::string{name}; }

  [[nodiscard]] static HostOptions Ticks(std::uint64_t ticks) {
    HostOptions options;
    options.install = House::kInstall;
    options.period_seconds = 0.001;
    options.ticks = ticks;
    return options;
  }

  int TracedPasses() {
    const std::string trace = FromUtf16(machine_.FileBytes(Data("ScheduleTraceFile.txt")).value_or(""));
    return static_cast<int>(Split(trace, "Calling from first Service exe service.").size()) - 1;
  }

  House house_;
  CheckedMachine& machine_ = house_.machine;
  StopSignals stop_;
};

TEST_F(HostsTest, AConfigurationThatIsMissingOrCutShortEndsAHostInsteadOfLoopingSilently) {
  const std::string whole = machine_.FileBytes(Data("Configuration.ini")).value();
  house_.WriteShared("Standard", "");
  for (std::size_t cut = 0; cut < whole.size(); cut += 3) {
    for (const auto run : {RunService, RunBackground, RunElevated}) {
      machine_.PutFile(Data("Configuration.ini"), whole.substr(0, cut));
      const auto before = machine_.Elapsed();
      testing::internal::CaptureStderr();
      const int code = run(machine_.machine(), Ticks(1), stop_);
      const std::string words = testing::internal::GetCapturedStderr();
      EXPECT_LT(machine_.Elapsed() - before, std::chrono::minutes{2}) << cut;
      // Without its last values the product is one all the same; half a file names none.
      if (code == 0 && cut > whole.size() / 2) continue;
      EXPECT_EQ(code, kExitUsage) << cut;
      EXPECT_THAT(words, HasSubstr(Data("Configuration.ini"))) << cut;
      EXPECT_NE(house_.Shared("Standard"), "1") << "a twin that does not run is not in charge";
    }
  }
}

TEST_F(HostsTest, TheServiceTicksAsOftenAsToldAndStaysInCharge) {
  EXPECT_EQ(RunService(machine_.machine(), Ticks(3), stop_), 0);
  EXPECT_EQ(TracedPasses(), 3);
  EXPECT_EQ(house_.Shared("Standard"), "0");
}

TEST_F(HostsTest, TheTwinIsInChargeWhileItRunsAndNoLonger) {
  EXPECT_EQ(RunBackground(machine_.machine(), Ticks(2), stop_), 0);
  EXPECT_EQ(TracedPasses(), 0);
  EXPECT_EQ(machine_.CallsMatching("*Write*Standard*").size(), 2U) << "once on entry, once on leaving";
  EXPECT_EQ(house_.Shared("Standard"), "0");
}

TEST_F(HostsTest, TheElevatedHostServesEveryRequestAndIsNeverInCharge) {
  machine_.PutFile(Data("OxWin\\SqlLaunchStatus.txt"), "1\r\n");
  machine_.PutFile(Data("OpenFileLaunchStatus.txt"), "1\r\n");
  machine_.PutFile(Data("VssBackupStatus.txt"), "1");
  EXPECT_EQ(RunElevated(machine_.machine(), Ticks(1), stop_), 0);
  EXPECT_EQ(machine_.FileBytes(Data("OxWin\\SqlLaunchStatus.txt")), "2\r\n");
  EXPECT_EQ(machine_.FileBytes(Data("OpenFileLaunchStatus.txt")), "2\r\n");
  EXPECT_EQ(house_.Shared("Standard"), "0");
}

TEST_F(HostsTest, ASecondHostOfItsKindLeavesBeforeItTouchesAnything) {
  for (const auto& [kind, run] : {std::pair<std::string, decltype(&RunService)>{"service", RunService},
                                  {"background", RunBackground},
                                  {"elevated", RunElevated}}) {
    SCOPED_TRACE(kind);
    house_.WriteShared("Started", "1");
    house_.WriteShared("Standard", "");
    machine_.HoldMutex("Global\\Ondura " + kind + " host");
    testing::internal::CaptureStderr();
    EXPECT_EQ(run(machine_.machine(), Ticks(1), stop_), kExitSecondHost);
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("another " + kind + " host runs"));
    EXPECT_EQ(house_.Shared("Started"), "1") << "the job of the first goes on";
    EXPECT_NE(house_.Shared("Standard"), "0") << "the first stays in charge";
    machine_.LetGoOfMutex("Global\\Ondura " + kind + " host");
    EXPECT_EQ(run(machine_.machine(), Ticks(1), stop_), 0) << "the first is gone";
  }
}

TEST_F(HostsTest, WhereTheMutexIsNotToBeHadTheProcessTableDecides) {
  for (const int processes : {1, 2}) {
    machine_.PutProcess(processes == 1 ? "C:\\a\\Host.exe" : "C:\\b\\HOST.exe",
                        SimulatedMachine::Access::kRefused);
    machine_.Fail("NamedMutexes.Create*");
    EXPECT_EQ(SoleHost(machine_.machine(), "Ondura", "background", "Host.exe").refusal().empty(),
              processes == 1);
  }
}

HostOptions Hourly() {
  HostOptions options;
  options.period_seconds = 3600;
  return options;
}

TEST(TickLoop, ARequestToStopLetsTheRunningTickEnd) {
  const StopSignals stop;
  int begun = 0;
  int ended = 0;
  RunTicks(Hourly(), stop, [&] {
    ++begun;
    raise(SIGTERM);
    ++ended;
  });
  EXPECT_EQ(begun, 1);
  EXPECT_EQ(ended, 1);
}

TEST(TickLoop, ARequestToStopEndsAPendingPeriodAtOnce) {
  const StopSignals stop;
  int ticks = 0;
  pid_t helper = 0;
  const auto begin = std::chrono::steady_clock::now();
  RunTicks(Hourly(), stop, [&] {
    ++ticks;
    helper = fork();
    if (helper == 0) {
      usleep(100'000);
      kill(getppid(), SIGINT);
      _exit(0);
    }
  });
  waitpid(helper, nullptr, 0);
  EXPECT_EQ(ticks, 1);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds{10});
}

TEST(TickReport, AFailedTickIsReportedOnceAndTheNextOneIsTried) {
  std::vector<std::string> said;
  TickReport report([&](std::string_view text) { said.emplace_back(text); });
  int tries = 0;
  for (const char* failure : {"no.", "no.", "other.", "", "", "no."}) {
    report.Run([&] {
      ++tries;
      if (*failure != 0) throw std::runtime_error(failure);
    });
  }
  EXPECT_EQ(tries, 6);
  EXPECT_THAT(said,
              testing::ElementsAre("no. The host goes on with its next tick.",
                                   "other. The host goes on with its next tick.", "the ticks go well again.",
                                   "no. The host goes on with its next tick."));
}

TEST(TickLoopDeathTest, ASecondRequestLeavesAtOnce) {
  const auto run = [] {
    const StopSignals stop;
    RunTicks({}, stop, [] {
      raise(SIGTERM);
      raise(SIGINT);
    });
    std::exit(0);
  };
  EXPECT_EXIT(run(), testing::ExitedWithCode(128 + SIGINT), "");
}

TEST(HostOptions, TheCommandLineIsReadOrRefused) {
  using Case = std::tuple<std::string, std::vector<const char*>, int>;  // -1 where the host runs
  for (auto [story, arguments, exit_code] : std::vector<Case>{
           {"all options", {"service", "--root", "r", "--install", "D:\\x", "--engine-limit", "0"}, -1},
           {"the root alone", {"service", "--root", "r"}, -1},
           {"the third host", {"elevated", "--root", "r"}, -1},
           {"help", {"service", "--help"}, 0},
           {"version", {"--version"}, 0},
           {"nothing", {}, kExitUsage},
           {"no root", {"service"}, kExitUsage},
           {"unknown host", {"tray", "--root", "r"}, kExitUsage},
           {"a period of nothing", {"service", "--root", "r", "--period", "0"}, kExitUsage},
           {"a speed of nothing", {"service", "--root", "r", "--speed", "0"}, kExitUsage},
           {"a negative count", {"service", "--root", "r", "--ticks", "-1"}, kExitUsage},
           {"a negative limit", {"service", "--root", "r", "--engine-limit", "-1"}, kExitUsage},
           {"a period that is no number", {"service", "--root", "r", "--period", "soon"}, kExitUsage}}) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    arguments.insert(arguments.begin(), "ondura-host");
    const ParsedOptions parsed = ParseHostOptions(static_cast<int>(arguments.size()), arguments.data());
    EXPECT_EQ(parsed.options ? -1 : parsed.exit_code, exit_code) << story;
    EXPECT_EQ(testing::internal::GetCapturedStdout().empty(), exit_code != 0) << story;
    EXPECT_EQ(testing::internal::GetCapturedStderr().empty(), exit_code != kExitUsage) << story;
  }
  const char* const arguments[] = {"ondura-host", "background", "--root", "r",       "--period",
                                   "1.5",         "--ticks",    "7",      "--speed", "9"};
  const auto options = ParseHostOptions(10, arguments).options.value();
  EXPECT_EQ(options.role, HostRole::kBackground);
  EXPECT_EQ(options.install, House::kInstall);
  EXPECT_EQ(options.period_seconds, 1.5);
  EXPECT_EQ(options.ticks, 7U);
  EXPECT_EQ(options.speed, 9);
}

}  // namespace
}  // namespace ondura
