// Occurrences that pass unnoticed, and jobs whose user has switched scheduling off: what is in the
// schedule file, the session files, the traces and the keys after each of several passes.

#include "platform/forwarding.h"
#include "scenarios/House.h"
#include "text/text.h"
#include "text/utf16.h"
#include "util/MachineFacts.h"
#include "util/date_text.h"

namespace ondura {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kDue = House::kDue;
constexpr const char* kTomorrow = House::kTomorrow;
constexpr std::string_view kNotice =
    "The Scheduled backup has not been performed. It is possible that an ongoing";
constexpr std::string_view kDetail =
    "interactive/continuous backup session was in progress or there was a network shutdown.";
constexpr std::string_view kNext = "It has been automatically set to the next frequency ";

// The house with ann, who is the default user and whose job was the last.
class MissedHouse : public House {
 public:
  MissedHouse() {
    AddUser("ann");
    WriteShared("Scheduled", "ann");
    WriteRegistry("Default User name", "cpp");  // "ann" in the shift form
    Service();
  }

  // A pass that begins with empty traces.
  void Pass() { PassOf(Service()); }
  void PassOf(Component& component) {
    machine.outside().files.Remove(UserPath("ScheduleTraceFile.txt"), Removal::kPlain);
    machine.outside().files.Remove(std::string{kData} + "ScheduleTraceFile.txt", Removal::kPlain);
    stamp = FormatDate(kStampPicture, machine.Now());
    log = UserPath("Session\\Scheduled ") + SystemTimeText(machine.Now()) + ".txt";
    component.controller().Cont_CheckStandardRunning();
  }
  std::string Stamped(std::string_view text) const { return stamp + std::string{text} + "\r\n"; }
  std::string Trace() { return Text("ScheduleTraceFile.txt"); }
  std::string MainTrace() {
    return FromUtf16(machine.FileBytes(std::string{kData} + "ScheduleTraceFile.txt").value_or(""));
  }
  bool UpkeepRan() { return MainTrace().find(Stamped(" Calling VaccumDB.")) != std::string::npos; }
  // The lines of a record that is seen as missed.
  std::string SeenAsMissed(int late_by) const {
    return Stamped("  Missed sch Backup option: ") + Stamped("  value : " + std::to_string(late_by)) +
           Stamped("  Missed scheduled backup [nResult:] 2");
  }
  std::vector<std::string> Keys() {
    return {Status("Status"),       Status("BackupFailureDays"),      Shared("Started"),
            Status("StatusWindow"), Status("StatusMessageIndicaton"), Status("SchEndTime")};
  }

  std::string stamp;  // of the last pass
  std::string log;    // that a session which begins with the last pass gets
};

std::string FileWith(const std::vector<ScheduleRecord>& records) {
  if (records.empty()) return "<none>";
  std::string text = "0\r\n";
  for (const ScheduleRecord& record : records) text += LineOfRecord(record) + "\r\n";
  return text;
}

ScheduleRecord At(ScheduleRecord record, const std::string& nexttime) {
  record.nexttime = nexttime;
  record.sortkey = SortKeyOfText(nexttime);
  return record;
}

struct MissedCase {
  std::string story, nexttime;
  std::string kind_and_flag;  // repeatkind and onceflag
  std::string mailids, told;  // addresses of one letter
  std::string left;           // in the schedule file from the first pass on; empty: the record is gone
  int late_by = 330;
  bool has_second_record = false;
  bool is_day_first = false;

  friend void PrintTo(const MissedCase& row, std::ostream* out) { *out << row.story; }
};

class MissedTest : public testing::TestWithParam<MissedCase> {
 protected:
  // The user's trace of a pass that misses the occurrence.
  std::string MissedTrace(const std::string& next) const {
    std::string trace =
        house_.SeenAsMissed(GetParam().late_by) + house_.Stamped("  Next transfer time  " + next);
    for (const char address : GetParam().told) {
      trace += house_.Stamped(std::string{"  E-mail id : "} + address) +
               house_.Stamped("  " + std::string{kNotice}) + " " + std::string{kDetail} + "\r\n " +
               std::string{kNext} + next + ".\r\n" + house_.Stamped("  Session File path " + house_.log) +
               house_.Stamped("  schvTemp.Desktop = ");
    }
    return trace;
  }

  MissedHouse house_;
};

TEST_P(MissedTest, LeavesTheRightFilesAndKeysAfterEachPass) {
  const MissedCase& row = GetParam();
  house_.machine.surroundings().locale_texts[kLocaleShortDate] = row.is_day_first ? "dd/MM/yyyy" : "M/d/yyyy";
  ScheduleRecord record = House::Daily(row.nexttime);
  record.repeatkind = row.kind_and_flag.substr(0, 1);
  record.daymask = "0100000";
  record.onceflag = row.kind_and_flag.substr(1);
  record.mailids = row.mailids;
  record.mailoption = "3";
  std::vector<ScheduleRecord> records(row.has_second_record ? 1 : 0, House::Daily("12-24-2026 18:00:00"));
  records.push_back(record);
  house_.PutSchedule("ann", records);
  const bool is_dropped = row.left.empty();
  records.pop_back();
  if (!is_dropped) records.push_back(At(record, row.left));
  std::vector<std::string> logs;
  std::string end_time;
  int failure_days = 0;
  for (const int pass : {1, 2, 3}) {
    house_.Pass();
    SCOPED_TRACE(row.story + ", pass " + std::to_string(pass));
    EXPECT_EQ(house_.Bytes("scheduleData.txt"), FileWith(records));
    const bool is_missed = pass == 1 || row.left == row.nexttime;
    const std::string next = is_dropped ? row.nexttime : row.left;
    // The first upkeep, done where there is no schedule file, sets the date of the next.
    EXPECT_EQ(house_.UpkeepRan(), records.empty() && !is_missed);
    const std::string idle = records.empty() && pass == 2 ? "Next DB Date is set \r\n" : "<none>";
    EXPECT_EQ(house_.Trace(), is_missed ? MissedTrace(next) : idle);
    failure_days += is_missed ? 1 : 0;
    if (is_missed && !row.told.empty()) {
      logs.push_back(house_.log);
      end_time = house_.stamp;
      EXPECT_EQ(
          house_.Text(house_.log.substr(house_.UserPath("").size() + 1)),
          " \r\n" + std::string{kNotice}.append(kDetail) + "\r\n" + std::string{kNext} + next + ".\r\n");
    }
    EXPECT_EQ(house_.SessionFiles(), logs);
    EXPECT_EQ(house_.Text("SchStatus.txt"), logs.empty() ? "<none>" : "");
    EXPECT_EQ(house_.Text("SchStatusError.txt"), logs.empty() ? "<none>" : "Backup has failed.\r\n");
    const char* shown = logs.empty() ? "" : "1";
    EXPECT_THAT(house_.Keys(), ElementsAre("4", std::to_string(failure_days), "0", shown, shown, end_time));
    house_.machine.Advance(20s);
  }
  EXPECT_THAT(house_.Commands(), IsEmpty()) << row.story;
  EXPECT_THAT(house_.LastMail(), IsEmpty()) << row.story;
}

constexpr const char* kEarlier = "11-14-2026 9:00:00";  // a Saturday
constexpr const char* kMonday = "11-16-2026 9:00:00";
constexpr const char* kWeeksAgo = "10-26-2026 9:00:00";
constexpr const char* kLastOfMonth = "10-31-2026 9:00:00";

const MissedCase kMissedCases[]{
    {"one that repeats moves on without a word", kEarlier, "60", "", "", kMonday},
    {"where the day comes first the hour is padded", kEarlier, "60", "", "", "11-16-2026 09:00:00", 330,
     false, true},
    {"weeks are passed; an empty address ends the list", kWeeksAgo, "60", "a;b;;c", "ab", kMonday, 880330,
     true},
    {"a shorter month has the last day", kLastOfMonth, "50", "a", "a", "11-30-2026 9:00:00", 830330},
    {"one to be dropped takes the file with it", kEarlier, "48", "a", "a", ""},
    {"or goes alone, even where it repeats", kEarlier, "68", "", "", "", 330, true},
    {"a single one is missed on every pass", kEarlier, "40", "a", "a", kEarlier},
    {"so is one of an unknown kind", kEarlier, "70", ";a", "", kEarlier, 330, true}};

INSTANTIATE_TEST_SUITE_P(Pass, MissedTest, testing::ValuesIn(kMissedCases));

TEST(MissedStory, AMachineToldToCatchUpRunsTheOccurrenceHoweverOldAndMissesNothing) {
  MissedHouse house;
  house.WriteRegistry("STARTMISSEDSCH", "1");
  const ScheduleRecord old = House::Daily("11-14-2025 12:30:00");
  house.PutSchedule("ann", {old});
  house.machine.Advance(15min);
  house.Pass();
  EXPECT_THAT(house.Commands(), ElementsAre(24, 51, 16));
  EXPECT_TRUE(house.Trace().starts_with(house.Stamped("  Missed sch Backup option: 1") +
                                        house.Stamped("  Scheduler Recordno : 1")));
  EXPECT_EQ(house.Bytes("scheduleData.txt"), FileWith({At(old, kTomorrow)}));
  house.Pass();
  EXPECT_EQ(house.Trace(), "<none>");
  EXPECT_EQ(house.Status("BackupFailureDays"), "0");
  house.machine.SetNow(ToLocalTime({2026, 11, 18, 9, 0, 0}));
  house.Pass();
  EXPECT_THAT(house.Commands(), ElementsAre(24, 51, 16, 24, 51, 16)) << "three days late";
  EXPECT_EQ(house.NextTime(), "11-18-2026 12:30:00");
}

TEST(MissedStory, AnOccurrenceThatPassesDuringAnInteractiveBackupOfItsUserRunsBehindIt) {
  MissedHouse house;
  const ScheduleRecord nightly = House::Daily(kDue);
  house.PutSchedule("ann", {nightly});
  house.WriteShared("Interactive", "ann");
  house.WriteProfile("BackupStatus", "Status", "2");
  house.WriteProfile("BackupStatus", "BackupFailureDays", "3");
  house.machine.Advance(61min);
  // The first pass sees the backup itself, the second no more than that the job waits.
  for (const int late_by : {101, 201}) {
    house.Pass();
    EXPECT_EQ(house.Trace(), house.SeenAsMissed(late_by) + house.Stamped("  Scheduler Recordno : 1") +
                                 house.Stamped("  Scheduled Disabled: FALSE") +
                                 house.Stamped(" Wait till the interactive backup is complete"));
    EXPECT_EQ(house.Bytes("scheduleData.txt"), FileWith({nightly}));
    EXPECT_THAT(house.Keys(), ElementsAre("2", "3", "0", "", "", ""));
    house.machine.AdvanceTo(ToLocalTime({2026, 11, 14, 14, 31, 0}));
  }
  house.WriteProfile("BackupStatus", "Status", "4");
  EXPECT_THAT(house.Commands(), IsEmpty());
  house.Pass();
  EXPECT_THAT(house.Commands(), ElementsAre(24, 51, 16));
  EXPECT_TRUE(house.Trace().starts_with(house.SeenAsMissed(201) + house.Stamped("  Scheduler Recordno : 1")));
  EXPECT_EQ(house.Bytes("scheduleData.txt"), FileWith({At(nightly, kTomorrow)}));
  EXPECT_EQ(house.Status("BackupFailureDays"), "0");
  EXPECT_THAT(house.SessionFiles(), IsEmpty());
  // The job has let go of what kept its occurrence alive: the next one is missed as any other.
  house.machine.SetNow(ToLocalTime({2026, 11, 15, 14, 0, 0}));
  house.Pass();
  EXPECT_EQ(house.Trace(),
            house.SeenAsMissed(170) + house.Stamped("  Next transfer time  11-16-2026 12:30:00"));
  EXPECT_EQ(house.Status("BackupFailureDays"), "1");
  EXPECT_THAT(house.Commands().size(), 3U);
}

TEST(MissedStory, OnlyARunningInteractiveBackupOfTheSameUserKeepsAnOccurrence) {
  for (const auto& [story, interactive, anns_status, bobs_status, is_held] :
       {std::tuple{"hers runs", "ann", "2", "4", true},
        {"hers is closed up", "ann", "4", "2", false},
        {"somebody else's runs", "bob", "2", "2", false},
        {"nobody has one", "", "2", "2", false}}) {
    MissedHouse house;
    house.PutSchedule("ann", {House::Daily(kEarlier)});
    house.WriteShared("Interactive", interactive);
    house.WriteProfile("BackupStatus", "Status", anns_status);
    house.machine.WriteIni(std::string{House::kData} + "Ondurabob\\Ondura.ini", "BackupStatus", "Status",
                           bobs_status);
    house.Pass();
    EXPECT_EQ(house.NextTime(), is_held ? kEarlier : "11-15-2026 9:00:00") << story;
    EXPECT_EQ(house.Status("BackupFailureDays"), is_held ? "" : "1") << story;
  }
}

// Lets the user act when the scan is over and the locale is read for the job.
class ActsBehindTheScan : public ForwardingLocaleInfo {
 public:
  ActsBehindTheScan(LocaleInfo& next, std::function<void()> act)
      : ForwardingLocaleInfo(next), act_(std::move(act)) {}
  std::string Text(int kind) override {
    if (kind == kLocaleShortDate && act_) std::exchange(act_, nullptr)();
    return ForwardingLocaleInfo::Text(kind);
  }

 private:
  std::function<void()> act_;
};

struct DisabledCase {
  std::string story, value, repeatkind;
  std::vector<int> commands;
  std::string nexttime;  // empty: the file is gone

  friend void PrintTo(const DisabledCase& row, std::ostream* out) { *out << row.story; }
};

class DisabledTest : public testing::TestWithParam<DisabledCase> {
 protected:
  DisabledTest() {
    house_.WriteProfile("BackupStatus", "BackupFailureDays", "3");
    component_.controller().cont_InitialSch(House::kInstall);
  }
  void Pass() { house_.PassOf(component_); }

  MissedHouse house_;
  const Machine& plain_ = house_.machine.machine();
  ActsBehindTheScan locale_{plain_.locale,
                            [this] { house_.WriteAccount("ScheduleDisable", GetParam().value); }};
  Component component_{With(plain_, locale_)};
};

TEST_P(DisabledTest, ClosesTheOccurrenceOfAUserWhoSwitchesOffBehindTheScan) {
  const DisabledCase& row = GetParam();
  SCOPED_TRACE(row.story);
  ScheduleRecord record = House::Mailing();
  record.repeatkind = row.repeatkind;
  house_.PutSchedule("ann", {record});
  const std::vector<ScheduleRecord> left(row.nexttime.empty() ? 0 : 1, At(record, row.nexttime));
  Pass();
  EXPECT_EQ(house_.Commands(), row.commands);
  EXPECT_EQ(house_.Bytes("scheduleData.txt"), FileWith(left));
  EXPECT_EQ(house_.Status("BackupFailureDays"), "0");
  if (!row.commands.empty()) return;
  const std::string head = house_.Stamped("  Missed sch Backup option: ") +
                           house_.Stamped("  Scheduler Recordno : 1") +
                           house_.Stamped("  Scheduled Disabled: TRUE");
  const std::string log = house_.UserPath("Session\\Scheduled 11-14-2026 12-30-00.txt");
  std::string trace = head + "11-14-2026 12:30:00:300 User disabled backup job." + log + "\r\n" +
                      house_.Stamped(" 4 : " + std::string{kDue});
  // A record that ran once falls out before it would move; the rewrite still names its time.
  const bool moves = !left.empty();
  if (moves) trace += house_.Stamped(" 5 : " + std::string{kTomorrow});
  trace += house_.Stamped("  Next transfer time  " + std::string{moves ? kTomorrow : kDue});
  EXPECT_EQ(house_.Trace(), trace);
  EXPECT_TRUE(house_.MainTrace().ends_with(house_.Stamped(" Scheduled Disabled.")));
  EXPECT_THAT(house_.Keys(), ElementsAre("4", "0", "0", "", "", ""));
  EXPECT_THAT(house_.SessionFiles(), IsEmpty()) << "the notice only goes into a file";
  EXPECT_THAT(house_.LastMail(), IsEmpty());

  // From now on the scan leaves her out, also when the next occurrence comes. The first upkeep, which sets a
  // date, is done before the scan where there is no file.
  const std::string upkeep = "Next DB Date is set \r\n";
  house_.machine.AdvanceTo(ToLocalTime({2026, 11, 14, 12, 31, 0}));
  Pass();
  const std::string left_out = house_.Stamped("  Scheduled Disabled");
  EXPECT_EQ(house_.Trace(), moves ? left_out + upkeep : upkeep + left_out);
  house_.machine.AdvanceTo(ToLocalTime({2026, 11, 15, 12, 30, 0}));
  Pass();
  EXPECT_EQ(house_.Trace(), house_.Stamped("  Scheduled Disabled"));
  EXPECT_EQ(house_.Bytes("scheduleData.txt"), FileWith(left));
  // Switched on again, she has missed what came up meanwhile.
  house_.WriteAccount("ScheduleDisable", "FALSE");
  house_.machine.AdvanceTo(ToLocalTime({2026, 11, 15, 15, 0, 0}));
  Pass();
  EXPECT_EQ(house_.NextTime(), moves ? "11-16-2026 12:30:00" : "");
  EXPECT_EQ(house_.Status("BackupFailureDays"), moves ? "1" : "0");
  EXPECT_THAT(house_.Commands(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Pass, DisabledTest,
    testing::Values(DisabledCase{"a daily record moves on", "TRUE", "6", {}, kTomorrow},
                    DisabledCase{"a single record falls out", "TRUE", "4", {}, ""},
                    DisabledCase{"any other word lets the job run", "True", "6", {24, 51, 16}, kTomorrow}));

}  // namespace
}  // namespace ondura
