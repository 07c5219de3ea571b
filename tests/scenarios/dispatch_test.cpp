// Passes over users and hosts: who is served, who is held back, and what a spoiled file does to the others.

#include "scenarios/House.h"

namespace ondura {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

TEST(DispatchStory, TheKeysAndTheHeaderGoThroughTheirStates) {
  DueHouse house;
  std::vector<std::string> states;
  const auto note = [&](const std::string& when) {
    states.push_back(when + ": " + house.Bytes("scheduleData.txt").substr(0, 1) + " " +
                     house.Shared("Started") + " " + house.Shared("Standard") + " " + house.Status("Status") +
                     " " + house.Status("RetValue") + " " + house.Status("CompareListCount") + "/" +
                     house.Status("StatusCheckCount"));
  };
  for (const int command : {24, 51, 16}) {
    house.During(command, [&, command] { note(std::to_string(command)); });
  }
  house.Tick();
  note("idle");
  EXPECT_THAT(states, ElementsAre("24: 1 1 0 1 0 /", "51: 1 1 0 1 0 0/1", "16: 1 1 0 402 402 0/1",
                                  "idle: 0 0 0 4 402 0/1"));
}

TEST(DispatchStory, AnIdlePassOpensEachScheduleFileOnceAndTheProcessTableAtMostOnce) {
  House house;
  for (const char* name : {"ann", "bob", "eve"}) {
    house.AddUser(name);
    house.PutSchedule(name, {House::Daily(House::kTomorrow)});
  }
  house.Tick();
  house.machine.ClearCalls();
  house.Tick();
  EXPECT_EQ(house.machine.CallsMatching("Files.Read *scheduleData.txt$").size(), 3U);
  EXPECT_LE(house.machine.CallsMatching("Processes.List").size(), 1U);
}

TEST(DispatchStory, ASpoiledScheduleFileKeepsNobodyElseWaiting) {
  const std::string due = "0\r\n1\b\bx\b\b" + std::string{House::kDue} + "\b\b\b\b0\b\b\b\b\b\b0\b\b0\b\b";
  for (const auto& [story, bytes] : std::map<std::string, std::string>{
           {"an empty file", ""},
           {"noise", std::string("\0\xFF\x01\b\b\r\n\b\b", 9)},
           {"a key that is no number", due + "!!!\b\b6\b\b1111111\r\n"},
           {"a key too large to come due", due + "2000010112300000\b\b6\b\b1111111\r\n"},
           {"a record without a day to move to", due + "202611141230\b\b6\b\b0\r\n"},
           {"a missed record without a date",
            "0\r\n1\b\bx\b\bsoon\b\b\b\b0\b\b\b\b\b\b0\b\b0\b\b202601011230\b\b6\b\b1\r\n"},
           {"the word of a job that was cut off", "4\r\n"}}) {
    House house;
    house.AddUser("ann");
    house.AddUser("bob");
    house.PutSchedule("bob", {House::Daily()});
    house.machine.PutFile(std::string{House::kData} + "Onduraann\\scheduleData.txt", bytes);
    house.WriteShared("Scheduled", "ann");
    for (int pass = 0; pass < 3; ++pass) house.Tick();
    EXPECT_EQ(house.NextTime(), House::kTomorrow) << story;
  }
}

ScheduleRecord With(ScheduleRecord record, std::string ScheduleRecord::*field, std::string_view value) {
  record.*field = value;
  return record;
}

TEST(DispatchStory, ARecordThatCanNotBeMovedIsServedOnceUntilItsLineChanges) {
  const ScheduleRecord no_day = With(House::Daily(), &ScheduleRecord::daymask, "0000000");
  const ScheduleRecord no_date = With(House::Daily(), &ScheduleRecord::nexttime, "soon");
  for (const auto& [story, record, catches_up, commands, failure_days] :
       {std::tuple{"without a day", no_day, false, 3U, "0"},
        {"without a date", no_date, false, 3U, "0"},
        {"of an unknown kind", With(no_day, &ScheduleRecord::repeatkind, "7"), false, 3U, "0"},
        {"long ago, caught up with", With(no_day, &ScheduleRecord::sortkey, "202601011230"), true, 3U, "0"},
        {"long ago, missed", With(no_date, &ScheduleRecord::sortkey, "202601011230"), false, 0U, "1"}}) {
    SCOPED_TRACE(story);
    DueHouse house(record);
    house.WriteProfile("BackupStatus", "BackupFailureDays", "0");
    house.WriteRegistry("STARTMISSEDSCH", catches_up ? "1" : "0");
    for (int tick = 0; tick < 6; ++tick) house.Tick();
    EXPECT_EQ(house.Commands().size(), commands);
    EXPECT_EQ(house.Status("BackupFailureDays"), failure_days);
    EXPECT_EQ(house.TraceHas("Schedule record can't be moved on"), record.repeatkind == "6");
    EXPECT_EQ(house.Bytes("scheduleData.txt"), House::FileOf({record}));
    house.PutSchedule("ann", {With(House::Daily(), &ScheduleRecord::mailids, "new@example.org")});
    house.Tick();
    EXPECT_EQ(house.Commands().size(), commands + 3);
  }
}

TEST(DispatchStory, ARecordThatStandsHidesNoOtherOfItsUser) {
  const ScheduleRecord missed =
      With(House::Daily("11-14-2026 9:00:00"), &ScheduleRecord::repeatkind, "4");  // again on each pass
  const ScheduleRecord no_day = With(House::Daily("11-14-2026 9:00:00"), &ScheduleRecord::daymask, "0");
  for (const ScheduleRecord& first : {missed, no_day}) {
    DueHouse house;
    house.PutSchedule("ann", {first, House::Daily()});
    house.Tick();
    EXPECT_TRUE(house.Commands().empty());
    EXPECT_EQ(house.Status("BackupFailureDays"), "1");
    house.Tick();
    EXPECT_THAT(house.Commands(), ElementsAre(24, 51, 16));
    EXPECT_EQ(house.Bytes("scheduleData.txt"), House::FileOf({first, House::Daily(House::kTomorrow)}));
    for (int tick = 0; tick < 3; ++tick) house.Tick();
    EXPECT_EQ(house.Status("BackupFailureDays"), first.repeatkind == "4" ? "3" : "0");
  }
}

TEST(DispatchStory, ARecordThatStandsHidesNoOtherUser) {
  DueHouse house;
  house.AddUser("bob");
  house.PutSchedule("ann", {With(House::Daily("11-14-2026 9:00:00"), &ScheduleRecord::repeatkind, "4")});
  house.PutSchedule("bob", {House::Daily()});
  for (int tick = 0; tick < 2; ++tick) house.Tick();
  house.user = "bob";
  EXPECT_EQ(house.NextTime(), House::kTomorrow);
}

TEST(DispatchStory, WhatTheUserChangesInTheScheduleDuringTheJobStaysAndNothingRunsTwice) {
  const ScheduleRecord daily = House::Daily();
  const ScheduleRecord moved = House::Daily(House::kTomorrow);
  const ScheduleRecord added = House::Daily("12-24-2026 18:00:00");
  const auto with_mail = [](const ScheduleRecord& record) {
    return With(record, &ScheduleRecord::mailids, "new@example.org");
  };
  const auto mondays = [](const ScheduleRecord& record) {
    return With(record, &ScheduleRecord::daymask, "0100000");
  };
  for (const auto& [story, during, left] : std::vector<std::tuple<std::string, std::string, std::string>>{
           {"a record more", House::FileOf({added, daily}), House::FileOf({added, moved})},
           {"a mail address", House::FileOf({with_mail(daily)}), House::FileOf({with_mail(moved)})},
           {"other days", House::FileOf({mondays(daily)}),
            House::FileOf({mondays(House::Daily("11-16-2026 12:30:00"))})},
           {"another time", House::FileOf({added}), House::FileOf({added})},
           {"one that runs once", House::FileOf({added, With(daily, &ScheduleRecord::repeatkind, "4")}),
            House::FileOf({added})},
           {"no record left", "0\r\n", "0\r\n"},
           {"nothing left", "", "0\r\n"}}) {
    for (const auto duration : {2s, 7200s}) {
      DueHouse house;
      house.OnCommand(51, [&, &bytes = during](ProgramRun& run) {
        house.machine.PutFile(house.UserPath("scheduleData.txt"), bytes);
        house.WriteResult(402);
        run.ExitAfter(duration, 0);
      });
      house.Tick();
      EXPECT_EQ(house.Bytes("scheduleData.txt"), left) << story;
      house.Tick();
      EXPECT_THAT(house.Commands(), ElementsAre(24, 51, 16)) << story;
      EXPECT_EQ(house.Bytes("scheduleData.txt"), left) << story;
      EXPECT_EQ(house.Status("BackupFailureDays"), "0") << story;
    }
  }
}

// The time of a change that another program makes under the lock, after which it gives the lock back.
TEST(DispatchStory, TheCloseUpWaitsForAnEditButNotForEver) {
  const ScheduleRecord moved = House::Daily(House::kTomorrow);
  const ScheduleRecord added = House::Daily("12-24-2026 18:00:00");
  for (const auto& [story, delay, left] :
       {std::tuple{"an edit under way", 21s, House::FileOf({added, moved})},
        {"one that stands still", 60s, House::FileOf({moved})}}) {
    DueHouse house;
    house.During(16, [&, after = delay] {
      house.machine.HoldMutex("Global\\OnduraEService machine files");
      house.machine.After(after, [&] {
        house.machine.PutFile(house.UserPath("scheduleData.txt"), House::FileOf({added, House::Daily()}));
        house.machine.LetGoOfMutex("Global\\OnduraEService machine files");
      });
    });
    house.Tick();
    EXPECT_EQ(house.Bytes("scheduleData.txt"), left) << story;
  }
}

TEST(DispatchStory, ACloseUpWithoutARecordMovesNothing) {
  DueHouse house;
  house.Service();
  house.WriteShared("Started", "1");
  DBaction& schedule = house.Service().context().schedule_file();
  schedule.ScheduleFilePath = house.UserPath("scheduleData.txt");
  for (const int stale : {-1, 0, 5, 32767}) {
    schedule.SelectedRecord = static_cast<std::int16_t>(stale);
    house.Service().controller().Closeupoperation();
    EXPECT_EQ(house.Bytes("scheduleData.txt"), House::FileOf({House::Daily()}));
    EXPECT_EQ(house.Shared("Started"), "0");
  }
}

TEST(DispatchStory, AStaleInteractiveFlagIsClearedAtTheSixteenthPass) {
  DueHouse house;
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

TEST(DispatchStory, ContinuousBackupIsPausedForTheJobAndResumedAfterIt) {
  DueHouse house;
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
  DueHouse house;
  house.WriteShared("Interactive", "ann");
  house.WriteShared("RTBackup", "1");
  house.Tick();
  EXPECT_TRUE(house.Commands().empty());
  EXPECT_EQ(house.Bytes("scheduleData.txt").substr(0, 3), "0\r\n");
  house.Tick();
  EXPECT_THAT(house.Commands(), ElementsAre(24, 51, 16));
}

// The twin is there before the job or comes in while the service's job waits between two runs of the engine,
// and ticks from then on. Users of one minute are served in the order of the list.
void ExpectOneRunEach(const std::vector<std::string>& users, bool starts_during_job,
                      std::chrono::seconds first_tick) {
  House house;
  for (const std::string& name : users) {
    house.AddUser(name);
    house.PutSchedule(name, {House::Daily()});
  }
  house.WriteShared("RealTimeBackup", "1");
  house.WriteRegistry("CurrentUser", "ann");
  std::vector<std::string> served;
  for (const int command : {24, 51, 16}) {
    house.During(command, [&, command] {
      house.user = house.Shared("Scheduled");
      if (command == 51) served.push_back(house.user);
    });
  }
  house.Service();
  if (!starts_during_job) house.Twin();
  bool in_twin = false;
  const std::function<void()> twin_tick = [&] {
    if (std::exchange(in_twin, true)) return;
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
  EXPECT_EQ(served, users);
  for (const std::string& name : users) {
    house.user = name;
    EXPECT_EQ(house.NextTime(), House::kTomorrow);
  }
}

TEST(TwoHostsStory, AnOccurrenceNeverRunsTwice) {
  for (const auto first_tick : {1s, 3s, 10s, 15s, 22s, 27s, 31s, 36s, 45s, 52s, 60s, 75s}) {
    SCOPED_TRACE(first_tick.count());
    for (const bool starts_during_job : {false, true}) {
      ExpectOneRunEach({"ann"}, starts_during_job, first_tick);
      ExpectOneRunEach({"ann", "bob"}, starts_during_job, first_tick);
    }
  }
}

// A host waits, or both have read the schedule before either wrote its header.
TEST(TwoHostsStory, TheFlagOfAJobThatTheOtherHostBeginsStaysAndTheOccurrenceIsItsOwn) {
  for (const auto& [interactive, moment] : {std::pair{"ann", 8s}, {"", 1s}}) {
    DueHouse house;
    house.WriteShared("Interactive", interactive);
    house.WriteShared("RTBackup", *interactive == '\0' ? "" : "1");
    house.Service();
    house.machine.After(moment, [&] { house.WriteShared("Started", "1"); });
    house.Tick();
    EXPECT_GE(house.machine.Elapsed(), moment);
    EXPECT_TRUE(house.Commands().empty());
    EXPECT_EQ(house.Shared("Started"), "1");
  }
}

TEST(TwoHostsStory, ATwinOfAnotherAccountSeesTheJobByItsEngine) {
  DueHouse house;
  house.WriteShared("Started", "0");
  // The twin can't open the service's processes, and the trace that shows the job's life may be gone.
  house.OnCommand(51, [&](ProgramRun& run) {
    for (const auto moment : {150s, 200s, 250s}) {
      run.After(moment, [&, moment] {
        if (moment > 150s)
          house.machine.outside().files.Remove(house.UserPath("ScheduleTraceFile.txt"), Removal::kForce);
        house.machine.ActAs("ann");
        house.Twin().controller().Cont_startschBackup();
        house.machine.ActAs("");
        EXPECT_EQ(house.Shared("Started") + house.Bytes("scheduleData.txt").substr(0, 1), "11");
      });
    }
    run.After(300s, [&] { house.WriteResult(402); });
  });
  house.Tick();
  EXPECT_THAT(house.Commands(), ElementsAre(24, 51, 16));
  EXPECT_EQ(house.NextTime(), House::kTomorrow);
}

// Between two runs of the engine only the job's trace shows its life.
TEST(TwoHostsStory, ATwinTakesAJobForAliveByATraceOfTwoMinutes) {
  for (const auto& [age, started] :
       {std::pair{121s, "0"}, {120s, "1"}, {0s, "1"}, {-120s, "1"}, {-121s, "0"}}) {
    DueHouse house;
    house.WriteShared("Started", "1");
    house.WriteShared("Scheduled", "ann");
    const std::string trace = house.UserPath("ScheduleTraceFile.txt");
    house.machine.PutFile(trace, "");
    house.machine.disk().SetModified(trace, house.machine.Now() - age);
    house.Twin();
    EXPECT_EQ(house.Shared("Started"), started) << age.count() << " s";
  }
}

TEST(TwoHostsStory, TheEngineOfATwinThatBrokeOffEndsBeforeTheNextJobBegins) {
  DueHouse house;
  house.Service();
  house.WriteShared("Standard", "1");
  house.WriteShared("Started", "1");
  const ProcessId engine = house.machine.PutProcess(House::kEngine);
  for (int tick = 0; tick < 3; ++tick) {
    house.Tick();
    EXPECT_EQ(house.Shared("Standard") + house.Shared("Started"), "01");
  }
  EXPECT_TRUE(house.Commands().empty());
  house.machine.EndProcess(engine);
  for (int tick = 0; tick < 2; ++tick) house.Tick();
  EXPECT_THAT(house.Commands(), ElementsAre(24, 51, 16));
}

TEST(TwoHostsStory, ATwinThatIsAbsentAtBothLooksIsTakenOver) {
  DueHouse house;
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
    DueHouse house;
    house.Service();
    house.machine.StopDeadAt(call);
    try {
      house.Tick();
    } catch (const PowerCut&) {
    }
    house.machine.journal().StayAlive();
    house.LoseService();
    for (int pass = 0; pass < 3; ++pass) house.Tick();
    EXPECT_EQ(house.NextTime(), House::kTomorrow) << "call " << call;
    EXPECT_EQ(house.Bytes("scheduleData.txt").substr(0, 3), "0\r\n") << "call " << call;
  }
}

}  // namespace
}  // namespace ondura
