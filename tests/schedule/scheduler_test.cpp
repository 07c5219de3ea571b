#include "schedule/Scheduler.h"

#include "schedule/occurrences.h"
#include "schedule_house.h"

namespace ondura {
namespace {

using DueCase = std::tuple<const char*, LocalTime, std::vector<const char*>, const char*, int, int>;

const auto kHalfPast = SimulatedMachine::kDefaultStart;

TEST(Due, IsDecidedByKeyUnitsInFileOrder) {
  for (const auto& [story, now, sortkeys, start_missed, want, selected] : std::vector<DueCase>{
           {"a minute ahead is not", kHalfPast, {"202611141231"}, "0", 0, -1},
           {"sixty units late is due", Time(2026, 11, 14, 12, 59), {"202611141199"}, "0", 1, 0},
           {"61 units late is missed", Time(2026, 11, 14, 12, 59), {"202611141198"}, "0", 2, 0},
           {"an hour late is a hundred", Time(2026, 11, 14, 13, 30), {"202611141230"}, "0", 2, 0},
           {"however late, when told to catch up", kHalfPast, {"200001010000"}, "1", 1, 0},
           {"13:59 at 14:00 is 41", Time(2026, 11, 14, 14), {"202611141359"}, "0", 1, 0},
           {"the first line, not the earliest", kHalfPast, {"202611141230", "202611141200"}, "0", 1, 0},
           {"a key that is no number", kHalfPast, {"soon", "202611141230"}, "0", 1, 1},
           {"no records", kHalfPast, {}, "1", 0, -1}}) {
    ScheduleHouse house;
    house.machine.SetNow(now);
    house.transfer.Trf_WriteUserNameRegistryProfile("STARTMISSEDSCH", start_missed);
    std::string bytes = "0\r\n";
    for (const char* sortkey : sortkeys) bytes += Line("11-14-2026 12:30:00", sortkey);
    house.PutSchedule(bytes);
    house.schedule.SelectedRecord = 7;  // of an earlier pass
    EXPECT_EQ(house.scheduler.Sch_Load_ScheduleData(), want) << story;
    EXPECT_EQ(house.schedule.SelectedRecord, selected) << story;
    EXPECT_EQ(house.machine.FileBytes(house.path), bytes) << story;
  }
}

TEST(Due, ARecordWithoutAKeyCostsTheFileAndTheOthersGoOn) {
  ScheduleHouse house;
  house.machine.SetNow(Time(2026, 11, 15, 0, 0, 5));
  house.PutSchedule("0\r\n" + Line("x", "") + Line("y", "202611142359"));
  EXPECT_EQ(house.scheduler.Sch_Load_ScheduleData(), kMissed);
  EXPECT_EQ(house.schedule.SelectedRecord, 1);
  EXPECT_EQ(house.machine.FileBytes(house.path), std::nullopt);
  EXPECT_EQ(house.TraceLines(), (std::vector<std::string>{"Schedule your data for backup again. ",
                                                          "11-15-2026 00:00:05  Missed sch Backup option: ",
                                                          "11-15-2026 00:00:05  value : 7641"}));
}

TEST(Due, AStandingRecordComesAfterTheOthersOrNotAgain) {
  ScheduleHouse house;
  house.PutSchedule("0\r\n" + Line("a", "202611141227") + Line("b", "202611141228") +
                    Line("c", "202611141229"));
  const auto selected = [&] {
    house.scheduler.Sch_Load_ScheduleData();
    return house.schedule.SelectedRecord;
  };
  const auto note = [&](std::size_t index, Standing standing) {
    house.scheduler.NoteStanding(house.schedule.ScheduleTable[index], standing);
  };
  EXPECT_EQ(selected(), 0);
  note(0, Standing::kAfterOthers);
  EXPECT_EQ(selected(), 1);
  note(1, Standing::kAfterOthers);
  note(2, Standing::kNotAgain);
  EXPECT_EQ(selected(), 0) << "the first of those that go last";
  note(0, Standing::kNotAgain);
  note(0, Standing::kAfterOthers);
  EXPECT_EQ(selected(), 1) << "a weaker word replaces none";
  note(1, Standing::kNotAgain);
  EXPECT_EQ(house.scheduler.Sch_Load_ScheduleData(), kNothingDue);
  house.schedule.ScheduleFilePath += "x";
  house.machine.PutFile(house.schedule.ScheduleFilePath, *house.machine.FileBytes(house.path));
  EXPECT_EQ(selected(), 0) << "the same line of another file";
  note(0, Standing::kAfterOthers);
  house.machine.PutFile(house.schedule.ScheduleFilePath, "0\r\n" + Line("a", "202611141227") + Line("y", ""));
  EXPECT_EQ(selected(), 0);
  EXPECT_TRUE(house.machine.FileBytes(house.schedule.ScheduleFilePath)) << "the search ended before it";
}

TEST(DayMask, IsTakenFromTheRight) {
  using Row = std::pair<const char*, const char*>;
  for (const auto& [mask, want] :
       {Row{"0100000", "0100000"}, Row{"100000", "0100000"}, Row{"1111111", "1111111"}, Row{"1", "0000001"},
        Row{" 1000001 ", "1000001"}, Row{"", "0000000"}, Row{"daily", "0000000"},
        Row{"99999999999", "0000000"}, Row{"2147483647.6", "0000000"}}) {
    std::string flags;
    for (const std::string& flag : DayFlagsOf(mask)) flags += flag;
    EXPECT_EQ(flags, want) << mask;
  }
}

struct MoveCase {
  std::string date_format, kind, mask, nexttime, sortkey, want_time, want_key;
};

// The last line of the trace that it leaves; empty without one.
std::string ExpectMove(const MoveCase& row, MoveOutcome outcome, std::size_t trace_lines) {
  ScheduleHouse house;
  house.scheduler.DateFormatText = row.date_format;
  house.scheduler.TimeFormatText = "HH:mm:ss";
  house.scheduler.SetDayFlags(row.mask);
  ScheduleRecord& record = house.schedule.schvTemp;
  record.repeatkind = row.kind;
  record.nexttime = row.nexttime;
  record.sortkey = row.sortkey;
  EXPECT_EQ(house.scheduler.sch_CheckRepeatAppend(), outcome) << row.nexttime;
  EXPECT_EQ(record.nexttime, row.want_time);
  EXPECT_EQ(record.sortkey, row.want_key);
  const auto trace = house.TraceLines();
  EXPECT_EQ(trace.size(), trace_lines);
  return trace.empty() ? "" : trace.back();
}

constexpr const char* kUs = "M/d/yyyy";
constexpr const char* kUk = "dd/MM/yyyy";
constexpr const char* kDashes = "dd-MM-yyyy";
constexpr const char* kDaily = "1111111";

// It is Saturday, 14 November 2026, 12:30: a week behind, a month ahead, and the present minute.
TEST(Moving, BringsARepeatingRecordIntoTheFuture) {
  for (const MoveCase& row : std::vector<MoveCase>{
           {kUs, "6", "100000", "11-16-2026 6:05:04", "202611160605", "11-23-2026 6:05:04", "202611230605"},
           {kUs, "6", kDaily, "10-30-2026 08:00:00", "202610300800", "11-15-2026 8:00:00", "202611150800"},
           {kUs, "6", kDaily, "11-10-2026 12:30:00", "202611101230", "11-14-2026 12:30:00", "202611141230"},
           {kUs, "5", "", "01-31-2026 9:00:00", "202601310900", "11-28-2026 9:00:00", "202611280900"},
           {kUs, "5", "", "01-31-2027 9:00:00", "202701310900", "02-28-2027 9:00:00", "202702280900"},
           {kUk, "6", kDaily, "05/12/2026 08:00:00", "202612050800", "12-06-2026 08:00:00", "202612060800"},
           {kUk, "5", "", "12-05-2026 8:00:00", "202612050800", "01-05-2027 08:00:00", "202701050800"},
           {kDashes, "6", kDaily, "05-12-2026 8:00:00", "202612050800", "12-06-2026 08:00:00",
            "202612060800"},
           {kDashes, "6", kDaily, "12-05-2026 8:00:00", "202612050800", "12-06-2026 08:00:00",
            "202612060800"}}) {
    ExpectMove(row, MoveOutcome::kMoved, 0);
  }
}

TEST(Moving, LeavesARecordThatCantBeMovedAndSaysSoOnce) {
  // The trace shows the date in the form that the move begins with.
  for (const auto& [date_format, kind, mask, nexttime, shown] :
       {std::tuple{kUs, "6", "0", "11-10-2026 6:05:04", "11-10-2026 6:05:04"},
        {kUk, "6", "", "10/11/2026 06:05:04", "11-10-2026 06:05:04"},
        {kUs, "5", "", "some day", "some day"},
        {kUs, "6", kDaily, "12-31-9999 8:00:00", "12-31-9999 8:00:00"}}) {
    const MoveCase row{date_format, kind, mask, nexttime, "200", nexttime, "200"};
    EXPECT_THAT(ExpectMove(row, MoveOutcome::kCannotMove, 1), testing::EndsWith(shown));
    ExpectMove({date_format, "4", mask, nexttime, "200", nexttime, "200"}, MoveOutcome::kDoesNotRepeat, 0);
  }
}

struct StepCase {
  MoveOutcome (Scheduler::*move)();
  std::string nexttime, want;
  int slept_ms;
};

TEST(Moving, YieldsAtEachStepButNotForLong) {
  using S = Scheduler;
  for (const auto& [move, nexttime, want, slept_ms] :
       {StepCase{&S::Sch_addhour_list, "11-14-2026 9:45:00", "11-14-2026 12:45:00", 4},
        StepCase{&S::Sch_addweekDay_list, "11-12-2026 9:00:00", "11-16-2026 9:00:00", 2},
        StepCase{&S::Sch_addWeek_list, "11-01-2026 9:00:00", "11-15-2026 9:00:00", 2},
        // Seconds don't count: this is the present minute.
        StepCase{&S::Sch_addWeek_list, "11-07-2026 12:30:00", "11-14-2026 12:30:00", 0},
        StepCase{&S::Sch_addweekEnd_list, "11-14-2026 9:00:00", "11-15-2026 9:00:00", 0},
        // A weekend that has fallen behind lands on a working day.
        StepCase{&S::Sch_addweekEnd_list, "11-06-2026 9:00:00", "11-16-2026 9:00:00", 12},
        StepCase{&S::Sch_addhour_list, "11-14-0226 12:45:00", "11-14-2026 12:45:00", 500}}) {
    ScheduleHouse house;
    house.machine.SetNow(Time(2026, 11, 14, 12, 30, 30));
    house.schedule.schvTemp.nexttime = nexttime;
    EXPECT_EQ((house.scheduler.*move)(), MoveOutcome::kMoved);
    EXPECT_EQ(house.schedule.schvTemp.nexttime, want) << nexttime;
    EXPECT_EQ(house.machine.Elapsed().count(), slept_ms) << nexttime;
  }
}

// From Sunday, 15 November 2026, on.
TEST(Moving, GoesFromEachDayOfTheWeekToTheNextWorkingOrWeekendDay) {
  const auto text = [](int day) { return "11-" + std::to_string(day) + "-2026 9:00:00"; };
  constexpr std::array kWorking{16, 17, 18, 19, 20, 23, 23};
  constexpr std::array kWeekend{21, 21, 21, 21, 21, 21, 22};
  for (int day = 0; day < 7; ++day) {
    ScheduleHouse house;
    ScheduleRecord& record = house.schedule.schvTemp;
    record.nexttime = text(15 + day);
    house.scheduler.Sch_addweekDay_list();
    EXPECT_EQ(record.nexttime, text(kWorking[static_cast<std::size_t>(day)])) << day;
    record.nexttime = text(15 + day);
    house.scheduler.Sch_addweekEnd_list();
    EXPECT_EQ(record.nexttime, text(kWeekend[static_cast<std::size_t>(day)])) << day;
  }
}

TEST(Moving, GoesOnFromAnOccurrenceThatPassedDuringTheYields) {
  ScheduleHouse house;
  house.machine.SetNow(Time(2026, 11, 16, 12, 30, 59));
  house.machine.machine().clock.Sleep(std::chrono::milliseconds{600});
  house.schedule.schvTemp.nexttime = "11-16-0226 12:30:00";
  EXPECT_EQ(house.scheduler.Sch_addweekEnd_list(), MoveOutcome::kMoved);
  EXPECT_EQ(house.schedule.schvTemp.nexttime, "11-17-2026 12:30:00");
}

TEST(Moving, TheNextListedDayComesInTheMachinesOwnForm) {
  ScheduleHouse house;
  house.scheduler.DateFormatText = kUk;
  house.scheduler.TimeFormatText = "h:mm tt";
  house.scheduler.SetDayFlags("1000000");
  EXPECT_EQ(house.scheduler.ValidateAddDay("11-14-2026 12:30:00"), "15/11/2026 12:30 PM");
  EXPECT_EQ(house.scheduler.ValidateAddDay("never"), "never");
}

}  // namespace
}  // namespace ondura
