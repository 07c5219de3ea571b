// Passes over users and hosts: who is served, who is held back, and what a spoiled file does to the others.

#include <gmock/gmock.h>

#include "scenarios/house.h"

namespace ondura {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

constexpr const char* kDue = "11-14-2026 12:30:00";
constexpr const char* kTomorrow = "11-15-2026 12:30:00";

TEST(DispatchStory, TwoUsersOfOneMinuteRunInTheOrderOfTheList) {
  House house;
  for (const char* name : {"ann", "bob"}) {
    house.AddUser(name);
    house.PutSchedule(name, {House::Daily(kDue)});
  }
  std::vector<std::string> served;
  house.OnCommand(51, [&](ProgramRun&) {
    house.user = house.Shared("Scheduled");
    served.push_back(house.user);
    house.WriteResult(402);
  });
  house.Tick();
  house.Tick();
  EXPECT_THAT(served, ElementsAre("ann", "bob"));
}

TEST(DispatchStory, TheKeysAndTheHeaderGoThroughTheirStates) {
  House house;
  house.AddUser("ann");
  house.PutSchedule("ann", {House::Daily(kDue)});
  std::vector<std::string> states;
  const auto note = [&](const std::string& when) {
    states.push_back(when + ": " + house.Bytes("scheduleData.txt").substr(0, 1) + " " +
                     house.Shared("Started") + " " + house.Shared("Standard") + " " + house.Status("Status") +
                     " " + house.Status("RetValue") + " " + house.Status("CompareListCount") + "/" +
                     house.Status("StatusCheckCount"));
  };
  house.OnCommand(24, [&](ProgramRun&) {
    note("24");
    house.WriteResult(402);
  });
  house.OnCommand(51, [&](ProgramRun&) {
    note("51");
    house.WriteResult(402);
  });
  house.OnCommand(16, [&](ProgramRun&) {
    note("16");
    house.WriteResult(402);
  });
  house.Tick();
  note("idle");
  EXPECT_THAT(states, ElementsAre("24: 1 1 0 1 0 /", "51: 1 1 0 1 0 0/1", "16: 1 1 0 402 402 0/1",
                                  "idle: 0 0 0 4 402 0/1"));
}

TEST(DispatchStory, AnIdlePassOpensEachScheduleFileOnceAndTheProcessTableAtMostOnce) {
  House house;
  for (const char* name : {"ann", "bob", "eve"}) {
    house.AddUser(name);
    house.PutSchedule(name, {House::Daily(kTomorrow)});
  }
  house.Tick();
  house.machine.ClearCalls();
  house.Tick();
  int reads = 0;
  for (const std::string& call : house.machine.CallsMatching("Files.Read ")) {
    if (call.ends_with("scheduleData.txt")) ++reads;
  }
  EXPECT_EQ(reads, 3);
  EXPECT_LE(house.machine.CallsMatching("Processes.List").size(), 1U);
}

struct SpoiledCase {
  const char* story;
  std::string bytes;
};

class SpoiledScheduleTest : public testing::TestWithParam<SpoiledCase> {};

TEST_P(SpoiledScheduleTest, KeepsNobodyElseWaiting) {
  House house;
  house.AddUser("ann");
  house.AddUser("bob");
  house.PutSchedule("bob", {House::Daily(kDue)});
  const std::string path = std::string{House::kData} + "Onduraann\\scheduleData.txt";
  house.machine.PutFile(path, GetParam().bytes);
  house.WriteShared("Scheduled", "ann");
  for (int pass = 0; pass < 3; ++pass) house.Tick();
  EXPECT_EQ(house.NextTime(), kTomorrow) << GetParam().story;
}

INSTANTIATE_TEST_SUITE_P(
    Dispatch, SpoiledScheduleTest,
    testing::Values(
        SpoiledCase{"an empty file", ""}, SpoiledCase{"a header alone", "0\r\n"},
        SpoiledCase{"a header cut off", "3"}, SpoiledCase{"noise", std::string("\0\xFF\x01\b\b\r\n\b\b", 10)},
        SpoiledCase{"a line without fields", "0\r\nhello\r\n"},
        SpoiledCase{"a key that is no number", "0\r\n1\b\bx\b\b" + std::string{kDue} +
                                                   "\b\b\b\b0\b\b\b\b\b\b0\b\b0\b\b!!!\b\b6\b\b1111111\r\n"},
        SpoiledCase{"a key too large to come due",
                    "0\r\n1\b\bx\b\b" + std::string{kDue} +
                        "\b\b\b\b0\b\b\b\b\b\b0\b\b0\b\b2000010112300000\b\b6\b\b1111111\r\n"},
        SpoiledCase{"a record without a day to move to",
                    "0\r\n1\b\bx\b\b" + std::string{kDue} +
                        "\b\b\b\b0\b\b\b\b\b\b0\b\b0\b\b202611141230\b\b6\b\b0\r\n"},
        SpoiledCase{"a missed record without a date",
                    "0\r\n1\b\bx\b\bsoon\b\b\b\b0\b\b\b\b\b\b0\b\b0\b\b202601011230\b\b6\b\b1\r\n"},
        SpoiledCase{"the word of a job that was cut off", "4\r\n"},
        SpoiledCase{"a megabyte of line ends", "0\r\n" + std::string(1 << 20, '\n')}));

TEST(DispatchStory, ARecordThatCanNotBeMovedStaysAndIsTraced) {
  House house;
  house.AddUser("ann");
  ScheduleRecord record = House::Daily(kDue);
  record.daymask = "0000000";
  house.PutSchedule("ann", {record});
  const std::string before = house.Bytes("scheduleData.txt");
  house.Tick();
  EXPECT_EQ(house.Bytes("scheduleData.txt"), before);
  EXPECT_TRUE(house.TraceHas("Schedule record can't be moved on"));
}

TEST(DispatchStory, ARecordThatTheUserAddsDuringTheJobSurvivesTheRewrite) {
  House house;
  house.AddUser("ann");
  const ScheduleRecord nightly = House::Daily(kDue);
  ScheduleRecord added = House::Daily("12-24-2026 18:00:00");
  added.schname = "Added";
  house.PutSchedule("ann", {nightly});
  house.OnCommand(51, [&](ProgramRun&) {
    house.PutSchedule("ann", {added, nightly});
    house.WriteResult(402);
  });
  house.Tick();
  ScheduleRecord moved = House::Daily(kTomorrow);
  EXPECT_EQ(house.Bytes("scheduleData.txt"),
            "0\r\n" + LineOfRecord(added) + "\r\n" + LineOfRecord(moved) + "\r\n");
}

TEST(DispatchStory, AnInteractiveBackupHoldsTheJobBackAndLetsItGoHoweverLate) {
  House house;
  house.AddUser("ann");
  house.PutSchedule("ann", {House::Daily(kDue)});
  house.WriteShared("Interactive", "ann");
  house.WriteProfile("BackupStatus", "Status", "0");
  house.Service();
  house.WriteProfile("BackupStatus", "Status", "2");
  house.Tick();
  EXPECT_TRUE(house.Commands().empty());
  house.machine.Advance(5h);
  house.Tick();
  EXPECT_TRUE(house.Commands().empty());
  house.WriteProfile("BackupStatus", "Status", "4");
  house.Tick();
  EXPECT_THAT(house.Commands(), ElementsAre(24, 51, 16));
}

TEST(DispatchStory, AStaleInteractiveFlagIsClearedAtTheSixteenthPass) {
  House house;
  house.AddUser("ann");
  house.PutSchedule("ann", {House::Daily(kDue)});
  house.WriteShared("Interactive", "ann");
  house.Service();
  house.WriteShared("IntBackup", "1");
  house.WriteProfile("BackupStatus", "Status", "2");
  for (int pass = 1; pass <= 15; ++pass) house.Tick();
  EXPECT_EQ(house.Status("Status"), "2");
  house.Tick();
  EXPECT_EQ(house.Status("Status"), "0");
  EXPECT_TRUE(house.Commands().empty());
  house.Tick();
  EXPECT_THAT(house.Commands(), ElementsAre(24, 51, 16));
}

TEST(DispatchStory, ContinuousBackupIsPausedForTheJobAndResumedBehindIt) {
  House house;
  house.AddUser("ann");
  house.PutSchedule("ann", {House::Daily(kDue)});
  house.WriteShared("RealTimeBackup", "1");
  house.WriteRegistry("CurrentUser", "ann");
  house.WriteShared("RTBackup", "1");
  house.Tick();
  EXPECT_THAT(house.Commands(), ElementsAre(24, 51, 16));
  EXPECT_THAT(house.machine.surroundings().continuous_backup_states,
              ElementsAre(ContinuousBackupState::kPause, ContinuousBackupState::kResume));
  EXPECT_EQ(house.Shared("RTBPausedBySch"), "0");
  EXPECT_EQ(house.Shared("RTBackup"), "0");
}

TEST(DispatchStory, ContinuousBackupOfAnInteractiveUserCostsOnePass) {
  House house;
  house.AddUser("ann");
  house.PutSchedule("ann", {House::Daily(kDue)});
  house.WriteShared("Interactive", "ann");
  house.WriteShared("RTBackup", "1");
  house.Tick();
  EXPECT_TRUE(house.Commands().empty());
  EXPECT_EQ(house.Bytes("scheduleData.txt").substr(0, 3), "0\r\n");
  house.Tick();
  EXPECT_THAT(house.Commands(), ElementsAre(24, 51, 16));
}

struct TwoHostsCase {
  const char* story;
  std::vector<std::string> users;
  bool starts_during_job;
};

class TwoHostsTest : public testing::TestWithParam<TwoHostsCase> {};

// The twin comes in while the service's job waits between two runs of the engine, and ticks from then on.
TEST_P(TwoHostsTest, AnOccurrenceNeverRunsTwice) {
  for (const auto first_tick : {1s, 3s, 10s, 15s, 22s, 27s, 31s, 36s, 45s, 52s, 60s, 75s}) {
    House house;
    for (const std::string& name : GetParam().users) {
      house.AddUser(name);
      house.PutSchedule(name, {House::Daily(kDue)});
    }
    house.WriteShared("RealTimeBackup", "1");
    house.WriteRegistry("CurrentUser", "ann");
    std::vector<std::string> served;
    for (const int command : {24, 51, 16}) {
      house.OnCommand(command, [&, command](ProgramRun&) {
        house.user = house.Shared("Scheduled");
        if (command == 51) served.push_back(house.user);
        house.WriteResult(402);
      });
    }
    house.Service();
    if (!GetParam().starts_during_job) house.Twin();
    bool in_twin = false;
    const std::function<void()> twin_tick = [&] {
      if (in_twin) return;
      in_twin = true;
      house.Twin();
      house.WriteShared("Standard", "1");
      house.Twin().controller().Cont_startschBackup();
      in_twin = false;
    };
    house.machine.PutProcess(House::kTwin);
    for (int tick = 0; tick < 10; ++tick) house.machine.After(first_tick + tick * 7s, twin_tick);
    house.Tick();
    for (int tick = 0; tick < 10; ++tick) {
      house.machine.Advance(20s);
      twin_tick();
      house.Tick();
    }
    EXPECT_EQ(served, GetParam().users) << GetParam().story << ", first tick " << first_tick.count();
    for (const std::string& name : GetParam().users) {
      house.user = name;
      EXPECT_EQ(house.NextTime(), kTomorrow) << GetParam().story << ", first tick " << first_tick.count();
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    Dispatch, TwoHostsTest,
    testing::Values(TwoHostsCase{"a twin that was there before the job", {"ann"}, false},
                    TwoHostsCase{"a twin that starts during the job", {"ann"}, true},
                    TwoHostsCase{"two users of one minute", {"ann", "bob"}, false},
                    TwoHostsCase{"two users of one minute and a late twin", {"ann", "bob"}, true}));

TEST(DispatchStory, ATickThatComesInDuringTheJobIsTurnedAway) {
  House house;
  house.AddUser("ann");
  house.PutSchedule("ann", {House::Daily(kDue)});
  bool in_tick = false;
  house.machine.OnPump([&] {
    if (in_tick) return;
    in_tick = true;
    house.Tick();
    in_tick = false;
  });
  house.Tick();
  EXPECT_THAT(house.Commands(), ElementsAre(24, 51, 16));
  EXPECT_EQ(house.NextTime(), kTomorrow);
}

TEST(TwoHostsStory, TheFlagOfAJobThatTheOtherHostBeginsDuringAWaitStands) {
  House house;
  house.AddUser("ann");
  house.PutSchedule("ann", {House::Daily(kDue)});
  house.WriteShared("Interactive", "ann");
  house.WriteShared("RTBackup", "1");
  house.Service();
  house.machine.After(8s, [&] { house.WriteShared("Started", "1"); });
  house.Tick();
  EXPECT_GE(house.machine.Elapsed(), 8s);
  EXPECT_EQ(house.Shared("Started"), "1");
}

TEST(TwoHostsStory, TheHostThatComesSecondToTheSameOccurrenceLeavesItToTheFirst) {
  House house;
  house.AddUser("ann");
  house.PutSchedule("ann", {House::Daily(kDue)});
  house.Service();
  // Both have read the file before either wrote its header; the other one is a moment ahead.
  house.machine.After(1s, [&] { house.WriteShared("Started", "1"); });
  house.Tick();
  EXPECT_TRUE(house.Commands().empty());
  EXPECT_EQ(house.Shared("Started"), "1");
}

TEST(TwoHostsStory, ATwinThatIsAbsentAtBothLooksIsTakenOver) {
  House house;
  house.AddUser("ann");
  house.PutSchedule("ann", {House::Daily(kDue)});
  house.WriteShared("Standard", "1");
  const ProcessId twin = house.machine.PutProcess(House::kTwin);
  house.Tick();
  EXPECT_TRUE(house.Commands().empty());
  EXPECT_EQ(house.machine.Elapsed(), 0s);
  house.machine.EndProcess(twin);
  house.machine.After(30s, [&] { house.machine.PutProcess(House::kTwin); });
  house.Tick();
  EXPECT_EQ(house.Shared("Standard"), "1");
  EXPECT_TRUE(house.Commands().empty());
}

TEST(CrashStory, AfterAPowerCutAnywhereTheOccurrenceIsStillThereOrMovedOn) {
  for (std::size_t call = 1; call < 400; call += 13) {
    House house;
    house.AddUser("ann");
    house.PutSchedule("ann", {House::Daily(kDue)});
    house.Service();
    house.machine.StopDeadAt(call);
    try {
      house.Tick();
    } catch (const PowerCut&) {
    }
    house.machine.journal().StayAlive();
    house.LoseService();
    for (int pass = 0; pass < 3; ++pass) house.Tick();
    EXPECT_EQ(house.NextTime(), kTomorrow) << "call " << call;
    EXPECT_EQ(house.Bytes("scheduleData.txt").substr(0, 3), "0\r\n") << "call " << call;
  }
}

}  // namespace
}  // namespace ondura
