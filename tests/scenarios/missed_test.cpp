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
constexpr const char* kEarlier = "11-14-2026 9:00:00";  // a Saturday
const std::string kNotice = "The Scheduled backup has not been performed. It is possible that an ongoing";
const std::string kDetail =
    "interactive/continuous backup session was in progress or there was a network shutdown.";
const std::string kNext = "It has been automatically set to the next frequency ";

// The house with ann, who is the default user and whose job was the last.
struct MissedHouse : House {
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
    machine.outside().files.Remove(kMainTrace, Removal::kPlain);
    stamp = FormatDate(kStampPicture, machine.Now());
    log = "Session\\Scheduled " + SystemTimeText(machine.Now()) + ".txt";
    component.controller().Cont_CheckStandardRunning();
  }
  std::string Stamped(std::string_view text) const { return stamp + std::string{text} + "\r\n"; }
  std::string Trace() { return Text("ScheduleTraceFile.txt"); }
  std::string MainTrace() { return FromUtf16(machine.FileBytes(kMainTrace).value_or("")); }
  // The lines of a record that is seen as missed.
  std::string SeenAsMissed(int late_by) const {
    return Stamped("  Missed sch Backup option: ") + Stamped("  value : " + std::to_string(late_by)) +
           Stamped("  Missed scheduled backup [nResult:] 2");
  }
  std::string Keys() {
    return Status("Status") + " " + Status("BackupFailureDays") + " " + Shared("Started") + " " +
           Status("StatusWindow") + Status("StatusMessageIndicaton") + " " + Status("SchEndTime");
  }

  const std::string kMainTrace = std::string{kData} + "ScheduleTraceFile.txt";
  std::string stamp;  // of the last pass
  std::string log;    // that a session which begins with the last pass gets
};

std::string FileWith(const std::vector<ScheduleRecord>& records) {
  return records.empty() ? "<none>" : House::FileOf(records);
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
  const char* short_date = "M/d/yyyy";
};

TEST(MissedStory, APassLeavesTheRightFilesAndKeys) {
  for (const MissedCase& row : {
           MissedCase{"where the day comes first the hour is padded", kEarlier, "60", "", "",
                      "11-16-2026 09:00:00", 330, false, "dd/MM/yyyy"},
           {"weeks are passed; an empty address ends the list", "10-26-2026 9:00:00", "60", "a;b;;c", "ab",
            "11-16-2026 9:00:00", 880330, true},
           {"one to be dropped takes the file with it", kEarlier, "48", "a", "a", ""},
           {"or goes alone, even where it repeats", kEarlier, "68", "", "", "", 330, true},
           {"one of an unknown kind is missed on every pass", kEarlier, "70", "a", "a", kEarlier, 330, true},
       }) {
    SCOPED_TRACE(row.story);
    MissedHouse house;
    house.machine.surroundings().locale_texts[kLocaleShortDate] = row.short_date;
    ScheduleRecord record = At(House::Mailing(), row.nexttime);
    record.repeatkind = row.kind_and_flag.substr(0, 1);
    record.daymask = "0100000";
    record.onceflag = row.kind_and_flag.substr(1);
    record.mailids = row.mailids;
    std::vector<ScheduleRecord> records(row.has_second_record ? 1 : 0, House::Daily("12-24-2026 18:00:00"));
    records.push_back(record);
    house.PutSchedule("ann", records);
    records.pop_back();
    if (!row.left.empty()) records.push_back(At(record, row.left));
    const std::string next = row.left.empty() ? row.nexttime : row.left;
    std::string keys;
    for (const int pass : {1, 2}) {
      house.Pass();
      EXPECT_EQ(house.Bytes("scheduleData.txt"), FileWith(records));
      const bool is_missed = pass == 1 || row.left == row.nexttime;
      // Upkeep is done before the scan where there is no schedule file.
      EXPECT_EQ(house.MainTrace().find(" Calling VaccumDB.") != std::string::npos,
                records.empty() && !is_missed);
      std::string trace = house.SeenAsMissed(row.late_by) + house.Stamped("  Next transfer time  " + next);
      for (const char address : row.told) {
        trace += house.Stamped(std::string{"  E-mail id : "} + address) +
                 house.Stamped("  " + kNotice + "\r\n " + kDetail + "\r\n " + kNext + next + ".") +
                 house.Stamped("  Session File path " + house.UserPath(house.log)) +
                 house.Stamped("  schvTemp.Desktop = ");
      }
      if (is_missed) {
        EXPECT_EQ(house.Trace(), trace);
        EXPECT_EQ(house.Text(house.log), row.told.empty()
                                             ? "<none>"
                                             : " \r\n" + kNotice + kDetail + "\r\n" + kNext + next + ".\r\n");
        keys = "4 " + std::to_string(pass) + " 0 " + (row.told.empty() ? " " : "11 " + house.stamp);
      }
      EXPECT_EQ(house.Keys(), keys);
      EXPECT_EQ(house.Text("SchStatusError.txt"), row.told.empty() ? "<none>" : "Backup has failed.\r\n");
      house.machine.Advance(20s);
    }
    EXPECT_THAT(house.Commands(), IsEmpty());
    EXPECT_THAT(house.LastMail(), IsEmpty());
  }
}

TEST(MissedStory, AMachineToldToCatchUpRunsTheOccurrenceHoweverOldAndMissesNothing) {
  MissedHouse house;
  house.WriteRegistry("STARTMISSEDSCH", "1");
  const ScheduleRecord old = House::Daily("11-14-2025 12:30:00");
  house.PutSchedule("ann", {old});
  house.machine.Advance(15min);
  house.Pass();
  EXPECT_TRUE(house.Trace().starts_with(house.Stamped("  Missed sch Backup option: 1") +
                                        house.Stamped("  Scheduler Recordno : 1")));
  house.Pass();
  EXPECT_THAT(house.Commands(), ElementsAre(24, 51, 16));
  EXPECT_EQ(house.Bytes("scheduleData.txt"), FileWith({At(old, kTomorrow)}));
  EXPECT_EQ(house.Status("BackupFailureDays"), "0");
}

TEST(MissedStory, AnOccurrenceThatPassesDuringAnInteractiveBackupOfItsUserRunsAfterIt) {
  MissedHouse house;
  house.PutSchedule("ann", {House::Daily()});
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
    EXPECT_EQ(house.NextTime(), kDue);
    EXPECT_EQ(house.Keys(), "2 3 0  ");
    house.machine.AdvanceTo(ToLocalTime({2026, 11, 14, 14, 31, 0}));
  }
  house.WriteProfile("BackupStatus", "Status", "4");
  EXPECT_THAT(house.Commands(), IsEmpty());
  house.Pass();
  EXPECT_EQ(house.NextTime() + " " + house.Status("BackupFailureDays"), std::string{kTomorrow} + " 0");
  EXPECT_THAT(house.SessionFiles(), IsEmpty());
  // The job has let go of what kept its occurrence alive: the next one is missed as any other.
  house.machine.SetNow(ToLocalTime({2026, 11, 15, 14, 0, 0}));
  house.Pass();
  EXPECT_EQ(house.NextTime() + " " + house.Status("BackupFailureDays"), "11-16-2026 12:30:00 1");
  EXPECT_THAT(house.Commands(), ElementsAre(24, 51, 16));
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
class ActsAfterTheScan : public ForwardingLocaleInfo {
 public:
  ActsAfterTheScan(LocaleInfo& next, std::function<void()> act)
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
  std::string left;  // empty: the record is gone
};

TEST(DisabledStory, TheOccurrenceOfAUserWhoSwitchesOffAfterTheScanIsClosed) {
  for (const DisabledCase& row :
       {DisabledCase{"a daily record moves on", "TRUE", "6", {}, kTomorrow},
        {"a single record falls out", "TRUE", "4", {}, ""},
        {"any other word lets the job run", "True", "6", {24, 51, 16}, kTomorrow}}) {
    SCOPED_TRACE(row.story);
    MissedHouse house;
    house.WriteProfile("BackupStatus", "BackupFailureDays", "3");
    const Machine& plain = house.machine.machine();
    ActsAfterTheScan locale(plain.locale, [&] { house.WriteAccount("ScheduleDisable", row.value); });
    Component component(With(plain, locale));
    component.controller().cont_InitialSch(House::kInstall);
    ScheduleRecord record = House::Mailing();
    record.repeatkind = row.repeatkind;
    house.PutSchedule("ann", {record});
    house.PassOf(component);
    EXPECT_EQ(house.Commands(), row.commands);
    EXPECT_EQ(house.NextTime(), row.left);
    EXPECT_EQ(house.Status("BackupFailureDays"), "0");
    if (!row.commands.empty()) continue;
    std::string trace =
        house.Stamped("  Missed sch Backup option: ") + house.Stamped("  Scheduler Recordno : 1") +
        house.Stamped("  Scheduled Disabled: TRUE") + "11-14-2026 12:30:00:300 User disabled backup job." +
        house.UserPath("Session\\Scheduled 11-14-2026 12-30-00.txt\r\n") +
        house.Stamped(" 4 : " + std::string{kDue});
    // A record that ran once falls out before it would move; the rewrite still names its time.
    const bool moves = !row.left.empty();
    if (moves) trace += house.Stamped(" 5 : " + row.left);
    EXPECT_EQ(house.Trace(), trace + house.Stamped("  Next transfer time  " + (moves ? row.left : kDue)));
    EXPECT_TRUE(house.MainTrace().ends_with(house.Stamped(" Scheduled Disabled.")));
    EXPECT_EQ(house.Keys(), "4 0 0  ");
    EXPECT_THAT(house.SessionFiles(), IsEmpty()) << "the notice only goes into a file";
    EXPECT_THAT(house.LastMail(), IsEmpty());
    // From now on the scan leaves her out, also when the next occurrence comes.
    house.machine.AdvanceTo(ToLocalTime({2026, 11, 15, 12, 30, 0}));
    house.PassOf(component);
    EXPECT_THAT(house.Trace(), testing::HasSubstr(house.Stamped("  Scheduled Disabled")));
    EXPECT_EQ(house.NextTime(), row.left);
    EXPECT_THAT(house.MainTrace(), testing::HasSubstr(" Calling VaccumDB."));
    // Switched on again, she has missed what came up meanwhile.
    house.WriteAccount("ScheduleDisable", "FALSE");
    house.machine.AdvanceTo(ToLocalTime({2026, 11, 15, 15, 0, 0}));
    house.PassOf(component);
    EXPECT_EQ(house.NextTime(), moves ? "11-16-2026 12:30:00" : "");
    EXPECT_EQ(house.Status("BackupFailureDays"), moves ? "1" : "0");
    EXPECT_THAT(house.Commands(), IsEmpty());
  }
}

}  // namespace
}  // namespace ondura
