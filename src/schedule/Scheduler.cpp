#include "schedule/Scheduler.h"

#include <algorithm>

#include "schedule/locale_dates.h"
#include "schedule/schedule_header.h"
#include "text/text.h"
#include "util/MachineLock.h"

namespace ondura {

namespace {

using namespace std::chrono_literals;

// How late a record may be, in units of the key: two keys are subtracted as numbers, also across hours
// and days, where the difference is not a number of minutes.
constexpr double kMostLateUnits = 60;

// Every step of a catch-up yields twice for a moment. A record of decades ago is moved without yielding on,
// so that a spoiled date can't hold a pass up for long.
constexpr int kMostYieldingSteps = 250;

}  // namespace

void Scheduler::SetDayFlags(std::string_view mask) { DayFlags = DayFlagsOf(mask); }

std::string Scheduler::Sch_SortBuildDate(std::string_view date) { return SortKeyOfText(date); }

double Scheduler::NowKey() const { return ParseNumber(SortKeyOf(machine_.clock.Now())).value_or(0); }

std::int16_t Scheduler::Sch_Load_ScheduleData() {
  schedule_.DB_ReadSchData("");
  const double now_key = NowKey();
  schedule_.SelectedRecord = -1;
  std::optional<std::pair<std::int16_t, double>> after_others;
  for (std::int16_t i = 0; i < schedule_.RecordCount; ++i) {
    const ScheduleRecord& record = schedule_.ScheduleTable[static_cast<std::size_t>(i)];
    if (record.sortkey.empty()) {
      // As if the search had ended at the record that goes last.
      if (!after_others) DropFile();
      continue;
    }
    const auto key = ParseNumber(record.sortkey);
    // A key that is not a number is never due.
    if (!key || now_key < *key) continue;
    const Standing standing = StandingOf(record);
    if (standing == Standing::kNone) return Judge(i, now_key - *key);
    if (standing == Standing::kAfterOthers && !after_others) after_others = {i, now_key - *key};
  }
  return after_others ? Judge(after_others->first, after_others->second) : kNothingDue;
}

void Scheduler::DropFile() {
  machine_.files.Remove(schedule_.ScheduleFilePath, Removal::kPlain);
  trace_.plain().WriteTrace("Schedule your data for backup again. ");
}

std::int16_t Scheduler::Judge(std::int16_t index, double late_by) {
  schedule_.SelectedRecord = index;
  const std::string start_missed = transfer_.Trf_ReadUserNameProfileReg(profile_keys::kStartMissed);
  trace_.User("  Missed sch Backup option: " + start_missed);
  if (start_missed == "1" || late_by <= kMostLateUnits) return kDue;
  trace_.User("  value : " + NumberText(late_by));
  return kMissed;
}

void Scheduler::NoteStanding(const ScheduleRecord& record, Standing standing) {
  Standing& noted = standing_[{schedule_.ScheduleFilePath, LineOfRecord(record)}];
  noted = std::max(noted, standing);
}

Standing Scheduler::StandingOf(const ScheduleRecord& record) const {
  if (standing_.empty()) return Standing::kNone;
  const auto noted = standing_.find({schedule_.ScheduleFilePath, LineOfRecord(record)});
  return noted == standing_.end() ? Standing::kNone : noted->second;
}

void Scheduler::sch_changefiledata(std::string_view word) {
  // Whoever replaces the file meanwhile would bring the old word back.
  const MachineLock lock(machine_.mutexes, MachineLock::kPatienceOfAHost);
  WriteHeaderWord(machine_.files, schedule_.ScheduleFilePath, HeaderWordOf(word));
}

MoveOutcome Scheduler::Sch_addhour_list() { return Move(Step::kHour); }

MoveOutcome Scheduler::Sch_addDay_list() { return Move(Step::kListedDay); }

MoveOutcome Scheduler::Sch_addweekDay_list() { return Move(Step::kWorkingDay); }

MoveOutcome Scheduler::Sch_addweekEnd_list() { return Move(Step::kWeekendDay); }

MoveOutcome Scheduler::Sch_addWeek_list() { return Move(Step::kWeek); }

MoveOutcome Scheduler::Sch_addMonth_list() { return Move(Step::kMonth); }

std::string Scheduler::ValidateAddDay(std::string_view date) {
  const auto from = ReadRecordDate(date, schedule_.schvTemp.sortkey, Locale());
  const auto next = from ? Stepped(*from, Step::kListedDay, DayFlags) : std::nullopt;
  return next ? DefaultDateText(*next, Locale()) : std::string{date};
}

// The clock is read again after the catch-up, because its sleeps may have let the new occurrence pass.
MoveOutcome Scheduler::Move(Step step) {
  ScheduleRecord& record = schedule_.schvTemp;
  do {
    const auto next = NextOccurrence(record, step, DayFlags, machine_.clock.Now(), Locale());
    if (!next) {
      trace_.User("  Schedule record can't be moved on : " + record.nexttime);
      return MoveOutcome::kCannotMove;
    }
    record.nexttime = next->nexttime;
    record.sortkey = next->sortkey;
    SleepThroughSteps(next->catch_up_steps);
    step = CatchUpStep(step);
  } while (NowKey() > ParseNumber(record.sortkey).value_or(0));
  return MoveOutcome::kMoved;
}

void Scheduler::SleepThroughSteps(int steps) {
  for (int i = 0; i < std::min(steps, kMostYieldingSteps); ++i) {
    machine_.clock.Sleep(1ms);
    machine_.clock.Sleep(1ms);
  }
}

MoveOutcome Scheduler::sch_CheckRepeatAppend() {
  const std::string kind = schedule_.schvTemp.repeatkind;
  if (kind != "5" && kind != "6") return MoveOutcome::kDoesNotRepeat;
  const std::string as_it_stood = schedule_.schvTemp.nexttime;
  PutIntoFixedForm();
  const MoveOutcome outcome = kind == "6" ? Sch_addDay_list() : Sch_addMonth_list();
  PutIntoFixedForm();
  if (outcome != MoveOutcome::kMoved) schedule_.schvTemp.nexttime = as_it_stood;
  return outcome;
}

// A machine that writes its dates day first keeps the record in the fixed form between two moves.
void Scheduler::PutIntoFixedForm() {
  if (!IsDayFirst(Locale())) return;
  const auto time = TimeOf(schedule_.schvTemp);
  if (time) schedule_.schvTemp.nexttime = FormatDate(kStampPicture, *time);
}

std::optional<LocalTime> Scheduler::TimeOf(const ScheduleRecord& record) const {
  return ReadRecordDate(record.nexttime, record.sortkey, Locale());
}

std::string Scheduler::ConvertToDate(std::string_view text) {
  return ondura::ConvertToDate(text, DateFormatText);
}

std::string Scheduler::ConvertToTime(std::string_view text) {
  return ondura::ConvertToTime(text, TimeFormatText);
}

}  // namespace ondura
