// A year of twenty users on one machine that sleeps at night: every run and every miss of it.

#include <algorithm>
#include <array>
#include <set>

#include "scenarios/House.h"
#include "util/date_text.h"

namespace ondura {
namespace {

using namespace std::chrono;
using namespace std::chrono_literals;

struct Plan {
  const char* user;  // in the order of the user list
  const char *first, *repeatkind, *daymask, *onceflag;
  int runs;  // in the whole year
  int misses;
  const char* next;  // when it is over; empty without a record
};

// A leap year that begins on a Saturday. The machine wakes at 7:00 and is put to sleep at 23:00, but for the
// two nights in which the clock changes.
constexpr std::array<Plan, 20> kPlans{{
    // 366 days but one: a job on 09-05 lasts to 09-07 and moves on over the day between.
    {"noon", "01-01-2028 12:30:00", "6", "1111111", "0", 365, 0, "01-01-2029 12:30:00"},
    // Wednesdays, Tuesdays with Thursdays, and Wednesdays again. Each has one that passes during that job.
    {"work", "01-05-2028 18:00:00", "6", "0001000", "0", 51, 1, "01-03-2029 18:00:00"},
    {"eve", "01-06-2028 22:50:00", "6", "0010100", "0", 102, 1, "01-02-2029 22:50:00"},
    {"early", "01-05-2028 8:00:00", "6", "0001000", "0", 51, 1, "01-03-2029 8:00:00"},
    // Sundays before the machine wakes: 60 units late is just in time, 61 are too late but for the two
    // nights.
    {"dawn60", "01-02-2028 6:40:00", "6", "1000000", "0", 53, 0, "01-07-2029 6:40:00"},
    {"dawn61", "01-02-2028 6:39:00", "6", "1000000", "0", 2, 51, "01-07-2029 6:39:00"},
    // Saturdays at the last minute, when the machine is asleep. On the two nights there is time for two jobs
    // before midnight, after which a minute is thousands of units.
    {"late1", "01-01-2028 23:59:00", "6", "0000001", "0", 2, 51, "01-06-2029 23:59:00"},
    {"late2", "01-01-2028 23:59:00", "6", "0000001", "0", 2, 51, "01-06-2029 23:59:00"},
    {"late3", "01-01-2028 23:59:00", "6", "0000001", "0", 0, 53, "01-06-2029 23:59:00"},
    // Sundays in the hour that spring leaves out and autumn has twice.
    {"night", "01-02-2028 2:30:00", "6", "1000000", "0", 1, 52, "01-07-2029 2:30:00"},
    {"gap", "01-02-2028 2:45:00", "6", "1000000", "0", 2, 51, "01-07-2029 2:45:00"},
    // The day that February shortens stays short.
    {"m31", "01-31-2028 12:30:00", "5", "0000000", "0", 12, 0, "01-29-2029 12:30:00"},
    {"m30", "01-30-2028 18:00:00", "5", "0000000", "0", 12, 0, "01-29-2029 18:00:00"},
    // By night, of which one is the night in autumn.
    {"m29", "01-29-2028 2:30:00", "5", "0000000", "0", 1, 11, "01-29-2029 2:30:00"},
    // 06-15 comes twice, and the second time has nothing left to run.
    {"m15", "01-15-2028 8:00:00", "5", "0000000", "0", 12, 0, "01-15-2029 8:00:00"},
    {"june", "06-15-2028 12:30:00", "4", "0000000", "0", 1, 0, ""},
    // Single ones: one runs, two pass by night. "8" drops a missed one; without it the record stays and is
    // missed on each tick until its user takes it away.
    {"once", "05-01-2028 12:30:00", "4", "0000000", "0", 1, 0, ""},
    {"drop", "05-02-2028 3:00:00", "4", "0000000", "8", 0, 1, ""},
    {"stay", "05-03-2028 3:00:00", "4", "0000000", "0", 0, 4, ""},
    {"never", "01-01-2029 12:30:00", "4", "0000000", "0", 0, 0, "01-01-2029 12:30:00"},
}};

LocalTime Time(std::string_view text) { return ParseFixedDate(text).value(); }

// How far a moment is along, as the numbers of the sort keys count.
std::int64_t Units(LocalTime time) { return std::stoll(FormatDate("yyyymmddHHmm", time)); }

class Year {
 public:
  Year() {
    for (const Plan& plan : kPlans) {
      house_.AddUser(plan.user);
      ScheduleRecord record = House::Daily(plan.first);
      record.repeatkind = plan.repeatkind;
      record.daymask = plan.daymask;
      record.onceflag = plan.onceflag;
      house_.PutSchedule(plan.user, {record});
      next_[plan.user] = Time(plan.first);
    }
    for (const int command : {24, 51, 16}) {
      house_.OnCommand(command, [this, command](ProgramRun&) {
        house_.user = house_.Shared("Scheduled");
        if (command == 51) transfers_.push_back(house_.user);
        if (command == 51 && lid_closes_until_) SetNow(*std::exchange(lid_closes_until_, std::nullopt));
        house_.WriteResult(402);
      });
    }
    service_.controller().cont_InitialSch(House::kInstall);
  }

  void SetNow(LocalTime now) { house_.machine.SetNow(now); }
  void CloseLidInNextJobUntil(LocalTime wake) { lid_closes_until_ = wake; }
  void TakeAway(const std::string& user) {
    house_.machine.outside().files.Remove(FileOf(user), Removal::kPlain);
    next_.erase(user);
    standing_.erase(user);
  }

  // The machine is awake from one moment to the other. The host ticks three times a minute; what is left out
  // here are ticks that find nothing, but for those when the machine wakes and, if asked for, every quarter.
  enum class Idle { kLeaveOut, kTickToo };
  void Live(LocalTime from, LocalTime to, Idle idle = Idle::kLeaveOut) {
    TickAt(from);
    for (LocalTime at = NextTick(from, idle); at <= to; at = NextTick(at, idle)) TickAt(at);
  }
  void LiveDays(LocalTime first, LocalTime behind_last) {
    for (LocalTime day = first; day < behind_last; day += days{1}) Live(day + 7h, day + 23h);
  }

  void ExpectTotals() {
    for (const Plan& plan : kPlans) {
      EXPECT_EQ(runs_[plan.user], plan.runs) << plan.user;
      EXPECT_EQ(misses_[plan.user], plan.misses) << plan.user;
      EXPECT_EQ(NextTime(plan.user), plan.next) << plan.user;
    }
  }

 private:
  std::string FileOf(const std::string& user) {
    house_.user = user;
    return house_.UserPath("scheduleData.txt");
  }
  std::string NextTime(const std::string& user) {
    house_.user = user;
    return house_.NextTime();
  }

  // When somebody is due whose record does not stand for good.
  LocalTime NextDue() const {
    LocalTime due = LocalTime::max();
    for (const auto& [user, next] : next_) due = standing_.contains(user) ? due : std::min(due, next);
    return due;
  }
  LocalTime NextTick(LocalTime behind, Idle idle) const {
    using Quarters = duration<std::int64_t, std::ratio<900>>;
    const LocalTime quarter = floor<Quarters>(behind) + 15min;
    return idle == Idle::kTickToo ? std::min(quarter, NextDue()) : NextDue();
  }

  // Ticks once, and on until those who are due and move on have been served.
  void TickAt(LocalTime moment) {
    if (moment > house_.machine.Now()) SetNow(moment);
    do Tick();
    while (NextDue() <= house_.machine.Now() && !testing::Test::HasFailure());
  }

  // One tick serves the earliest who is due, before those whose records stand, and leaves nobody unserved.
  void Tick() {
    transfers_.clear();
    const LocalTime now = house_.machine.Now();
    const LocalTime due = NextDue();
    service_.controller().Cont_CheckStandardRunning();
    const std::string user = service_.installation().CurrentUser;
    const std::string what = WhatHappenedTo(user);
    SCOPED_TRACE(user + what + FormatDate(kStampPicture, now));
    EXPECT_EQ(!what.empty(), due <= now || !standing_.empty());
    if (what.empty()) return;
    const LocalTime time = next_.at(user);
    EXPECT_EQ(time, due <= now ? due : time);
    EXPECT_EQ(what, Units(now) - Units(time) > 60 ? " missed " : " ran ");
    ++(what == " ran " ? runs_ : misses_)[user];
    MoveOn(user, ParseFixedDate(NextTime(user)));
  }

  void MoveOn(const std::string& user, std::optional<LocalTime> next) {
    if (!next) {
      next_.erase(user);
    } else if (*next == next_[user]) {
      standing_.insert(user);
    } else {
      EXPECT_GE(*next, floor<minutes>(house_.machine.Now()));
      next_[user] = *next;
    }
  }

  // A run starts the engine's transfer once, a miss adds a day without a backup.
  std::string WhatHappenedTo(const std::string& user) {
    house_.user = user;
    const std::string days = house_.Status("BackupFailureDays");
    const bool has_failed = days != "0" && days != failure_days_[user];
    failure_days_[user] = days;
    const bool has_run = transfers_ == std::vector{user};
    if (transfers_.empty() && !has_failed) return "";
    if (has_run == has_failed) return " failed in a run or had another's ";
    return has_run ? " ran " : " missed ";
  }

  House house_{Time("01-01-2028 7:00:00")};
  // Nobody asks for the calls of a year, so that they are not recorded.
  Component service_{house_.machine.outside()};
  std::vector<std::string> transfers_;  // of the present tick
  std::optional<LocalTime> lid_closes_until_;
  std::map<std::string, std::string> failure_days_;
  std::map<std::string, LocalTime> next_;
  std::set<std::string> standing_;
  std::map<std::string, int> runs_;
  std::map<std::string, int> misses_;
};

LocalTime Day(std::string_view text) { return Time(std::string{text} + "-2028"); }

TEST(YearStory, EveryOccurrenceOfAYearRunsOnceOrIsMissedAsTheClockHasIt) {
  constexpr auto kTickToo = Year::Idle::kTickToo;
  Year year;
  year.LiveDays(Day("01-01"), Day("03-25"));
  // The clock goes from 1:59 to 3:00: what came up at 2:30 is no minute late in truth, but 70 units by the
  // clock.
  year.Live(Day("03-25") + 7h, Day("03-26") + 1h + 59min);
  year.SetNow(Day("03-26") + 3h);
  year.Live(Day("03-26") + 3h, Day("03-26") + 7h, kTickToo);
  year.Live(Day("03-26") + 7h, Day("03-26") + 23h);
  year.LiveDays(Day("03-27"), Day("05-03"));
  // A record that stays keeps nobody waiting, though its key is the earliest, until its user takes it away.
  year.Live(Day("05-03") + 7h, Day("05-03") + 8h, kTickToo);
  year.TakeAway("stay");
  year.Live(Day("05-03") + 9h, Day("05-03") + 23h);
  year.LiveDays(Day("05-04"), Day("06-15"));
  // Somebody sets the clock back by a day: everybody's next occurrence is a day further away, and what has
  // run once does not run again.
  year.Live(Day("06-15") + 7h, Day("06-15") + 13h);
  year.SetNow(Day("06-14") + 13h);
  year.Live(Day("06-14") + 13h, Day("06-14") + 23h, kTickToo);
  year.Live(Day("06-15") + 7h, Day("06-15") + 23h, kTickToo);
  year.LiveDays(Day("06-16"), Day("09-05"));
  // The lid is closed over a job and opened two days later.
  year.CloseLidInNextJobUntil(Day("09-07") + 7h);
  year.LiveDays(Day("09-05"), Day("09-06"));
  year.LiveDays(Day("09-07"), Day("10-28"));
  // The clock goes from 2:59 to 2:00, and the hour that comes again has had its runs.
  year.Live(Day("10-28") + 7h, Day("10-29") + 2h + 59min);
  year.SetNow(Day("10-29") + 2h);
  year.Live(Day("10-29") + 2h, Day("10-29") + 7h, kTickToo);
  year.Live(Day("10-29") + 7h, Day("10-29") + 23h);
  year.LiveDays(Day("10-30"), Day("12-31") + days{1});
  year.ExpectTotals();
}

}  // namespace
}  // namespace ondura
