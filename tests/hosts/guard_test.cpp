// What a host does about an engine that does not start or end, and about a clock that can't be right.

#include <gmock/gmock.h>

#include "hosts.h"
#include "scenarios/House.h"
#include "text/text.h"
#include "text/utf16.h"
#include "util/date_text.h"

namespace ondura {
namespace {

using namespace std::chrono_literals;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr const char* kState = "C:\\ProgramData\\Ondura\\HostState.ini";

class GuardTest : public testing::Test {
 protected:
  // Each tick of an hour takes a moment.
  void RunTicks(std::uint64_t ticks, double limit_hours = 24) { RunTicksOf(house_, ticks, limit_hours); }
  void RunTicksOf(House& house, std::uint64_t ticks, double limit_hours = 24) {
    HostOptions options;
    options.install = House::kInstall;
    options.period_seconds = 3600;
    options.speed = 1'000'000;
    options.ticks = ticks;
    options.engine_limit_hours = limit_hours;
    testing::internal::CaptureStderr();
    EXPECT_EQ(RunService(house.machine.machine(), options, stop_), 0);
    said_ = testing::internal::GetCapturedStderr();
  }

  int TimesInTrace(std::string_view text) { return TimesInTraceOf(house_, text); }
  static int TimesInTraceOf(House& house, std::string_view text) {
    const std::string path = std::string{House::kData} + "ScheduleTraceFile.txt";
    return static_cast<int>(Split(FromUtf16(house.machine.FileBytes(path).value_or("")), text).size()) - 1;
  }

  static std::string Note(House& house, std::string_view section, std::string_view key) {
    return house.machine.ReadIni(kState, section, key);
  }

  DueHouse house_;
  StopSignals stop_;
  std::string said_;
};

TEST_F(GuardTest, AnEngineBeyondTheLimitIsStoppedAsItsUserWouldAndThenEnded) {
  for (const int command : {16, 28, 51}) {  // the first looks at no request
    SCOPED_TRACE(command);
    DueHouse house;
    if (command == 28) house.WriteMethod("1");
    house.OnCommand(command, [](ProgramRun& run) { run.NeverEnds(); });
    RunTicksOf(house, 1, 2);
    EXPECT_GE(house.machine.Elapsed(), 2h);
    EXPECT_LT(house.machine.Elapsed(), 2h + 10min);
    EXPECT_FALSE(house.machine.IsRunning("OndClsClient.exe"));
    EXPECT_EQ(house.NextTime(), House::kTomorrow);
    EXPECT_THAT(Note(house, "EngineEnded", "ann"), HasSubstr("ran longer than 2 h"));
  }
}

TEST_F(GuardTest, TheLimitCanBeSetAndLeavesAnEngineThatObeysToItself) {
  house_.OnCommand(51, [&](ProgramRun& run) {
    run.NeverEnds();
    run.Every(1s, [&] {
      if (house_.Status("Cancel") == "1") run.Exit(0);
    });
  });
  RunTicks(1, 0.5);
  EXPECT_LT(house_.machine.Elapsed(), 32min);
  EXPECT_EQ(TimesInTrace("the backup engine ran longer than 0.5 h, and its job was stopped"), 1);
  EXPECT_EQ(TimesInTrace("was ended"), 0);
  house_.PutSchedule("ann", {House::Daily(house_.NextTime())});
  house_.Answer(51, 402);
  house_.machine.AdvanceTo(*ParseFixedDate(House::kTomorrow));
  RunTicks(1);
  EXPECT_EQ(Note(house_, "EngineEnded", "ann"), "") << "the note is on the last job";
}

TEST_F(GuardTest, AJobWhoseEngineFailsToStartIsStoppedAtOnce) {
  for (const char* command : {"28", "51"}) {
    DueHouse house;
    if (std::string_view{command} == "28") house.WriteMethod("1");
    house.machine.Fail(std::string{"Processes.Launch*OndClsClient.exe*"} + command + "<*");
    RunTicksOf(house, 1);
    EXPECT_LT(house.machine.Elapsed(), 10min) << command;
    EXPECT_THAT(Note(house, "EngineEnded", "ann"), HasSubstr("could not be started"));
  }
}

TEST_F(GuardTest, NoPassIsMadeWithoutAnEngineAndItIsSaidOnce) {
  for (const auto& [bytes, words] : {std::pair{"", "is not there"}, {"no program", "can't be started"}}) {
    house_.machine.RemoveProgram(House::kEngine);
    if (*bytes != '\0') house_.machine.PutFile(House::kEngine, bytes);
    RunTicks(3);
    EXPECT_THAT(said_, AllOf(HasSubstr(words), HasSubstr(House::kEngine)));
    EXPECT_THAT(Note(house_, "Host", "Waits"), HasSubstr(words));
    EXPECT_EQ(TimesInTrace(words), 1);
  }
  EXPECT_EQ(house_.NextTime(), House::kDue);
  EXPECT_EQ(TimesInTrace("Calling from first Service"), 0);
}

struct ClockCase {
  const char* story;
  const char* last;
  std::chrono::hours jump;  // of the clock since then
  int ticks;                // one an hour
  int passes;
  const char* words;  // in the main trace
};

TEST_F(GuardTest, AClockIsBelievedWhereAMachineMayHaveBeenOff) {
  constexpr auto kYear = std::chrono::hours{24 * 365};
  for (const ClockCase& row :
       {ClockCase{"a usual period", House::kDue, 0h, 2, 2, nullptr},
        {"the hour that comes twice", House::kDue, -1h, 2, 2, nullptr},
        {"a week's sleep", House::kDue, 24h * 7, 2, 2, "The last pass was 7 days ago."},
        {"two years on a shelf", House::kDue, 2 * kYear, 24, 0, "more than a year after the last pass"},
        {"and a day's wait", House::kDue, 2 * kYear, 26, 2, "The passes go on."},
        {"nine centuries", House::kDue, 900 * kYear, 50, 0, "more than a year after the last pass"},
        {"a clock that went back", House::kDue, -24h * 30, 1, 0, "more than a day before the last pass"},
        {"and an hour's wait", House::kDue, -24h * 30, 3, 2, "The passes go on."},
        {"no time noted so far", "", 900 * kYear, 1, 1, nullptr},
        {"a note that is no time", "soon", 900 * kYear, 1, 1, nullptr}}) {
    DueHouse fresh;
    fresh.PutSchedule("ann", {House::Daily("11-14-2090 12:30:00")});
    fresh.machine.WriteIni(kState, "Host", "LastTick", row.last);
    fresh.machine.SetNow(fresh.machine.Now() + row.jump);
    RunTicksOf(fresh, static_cast<std::uint64_t>(row.ticks));
    EXPECT_EQ(TimesInTraceOf(fresh, "writing here"), row.passes) << row.story;
    if (row.words == nullptr) {
      EXPECT_THAT(said_, IsEmpty()) << row.story;
    } else {
      EXPECT_GE(TimesInTraceOf(fresh, row.words), 1) << row.story;
      EXPECT_THAT(said_, HasSubstr(row.words)) << row.story;
    }
  }
}

TEST_F(GuardTest, AClockThatJumpsCenturiesDuringAJobDoesNotMoveItsRecordThere) {
  house_.During(51, [&] { house_.machine.SetNow(house_.machine.Now() + 24h * 365 * 900); });
  RunTicks(1);
  EXPECT_THAT(house_.NextTime(), StartsWith("11-15-2026"));
}

}  // namespace
}  // namespace ondura
