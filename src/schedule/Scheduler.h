#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/machine.h"
#include "profile/Transfer.h"
#include "reporting/Trace.h"
#include "schedule/DBaction.h"
#include "schedule/occurrences.h"

namespace ondura {

// What Sch_Load_ScheduleData finds.
inline constexpr std::int16_t kNothingDue = 0;
inline constexpr std::int16_t kDue = 1;
inline constexpr std::int16_t kMissed = 2;

// What a routine that moves the record has done. A record that can't be moved (its `nexttime` is not a date,
// or its days hold no "1") is left unchanged, and the user's trace has a line about it.
enum class MoveOutcome { kMoved, kDoesNotRepeat, kCannotMove };

// How a record is served that was dealt with and is in its file as before: after all others that are due, or
// not again until its line changes. Each is stronger than the one before it.
enum class Standing { kNone, kAfterOthers, kNotAgain };

// Decides whether a record is due and moves a used one on. The moving routines work on `schvTemp` in place:
// `nexttime` and `sortkey` step forward until they lie in the present minute or after it.
class Scheduler {
 public:
  Scheduler(const Machine& machine, Trace& trace, const Transfer& transfer, DBaction& schedule)
      : machine_(machine), trace_(trace), transfer_(transfer), schedule_(schedule) {}

  // The locale's short date and time format, set on every dispatch pass.
  std::string DateFormatText;
  std::string TimeFormatText;

  // "0" or "1" from Sunday (0) to Saturday (6); the last is unused.
  DayFlagTexts DayFlags;

  // Fills DayFlags afresh from the digits of `mask`, counted from the right. A mask that is no 32-bit
  // number counts as 0.
  void SetDayFlags(std::string_view mask);

  // The key YYYYMMDDHHmm of a text in the fixed form "mm-dd-yyyy H:mm:ss".
  std::string Sch_SortBuildDate(std::string_view date);

  // Reads the table from ScheduleFilePath and picks the first record in file order that has come due:
  // kNothingDue, kDue or kMissed. Sets SelectedRecord. A record without a key costs the whole file. Standing
  // records are passed over as they were noted.
  std::int16_t Sch_Load_ScheduleData();

  // For records of the file at ScheduleFilePath. What was noted holds for as long as this object lives; a
  // weaker word doesn't replace a stronger one.
  void NoteStanding(const ScheduleRecord& record, Standing standing);
  [[nodiscard]] Standing StandingOf(const ScheduleRecord& record) const;

  // Overwrites the header at ScheduleFilePath with the word of a record number. A missing file is not made.
  void sch_changefiledata(std::string_view word);

  MoveOutcome Sch_addhour_list();

  // To the next day that is on in DayFlags.
  MoveOutcome Sch_addDay_list();

  // The first day after `date` that is on in DayFlags, in the machine's default date text. `date` comes
  // back unchanged when it is not a date or no day is on.
  std::string ValidateAddDay(std::string_view date);

  // To the next working day.
  MoveOutcome Sch_addweekDay_list();

  // To the next Saturday or Sunday; one that is later by more lands on a working day.
  MoveOutcome Sch_addweekEnd_list();

  MoveOutcome Sch_addWeek_list();

  // A calendar month keeps the day or takes the last of a shorter month, and stays there.
  MoveOutcome Sch_addMonth_list();

  // Moves a record of kind "5" (monthly) or "6" (listed days); any other stays.
  MoveOutcome sch_CheckRepeatAppend();

  // Date or time of a text in the fixed form, rendered in the locale's format; for the host.
  std::string ConvertToDate(std::string_view text);
  std::string ConvertToTime(std::string_view text);

  // The record's `nexttime` as a date; std::nullopt if it is not one.
  [[nodiscard]] std::optional<LocalTime> TimeOf(const ScheduleRecord& record) const;

 private:
  [[nodiscard]] LocaleFacts Locale() const { return {DateFormatText, TimeFormatText}; }
  [[nodiscard]] double NowKey() const;
  [[nodiscard]] std::int16_t Judge(std::int16_t index, double late_by);
  void DropFile();
  MoveOutcome Move(Step step);
  void SleepThroughSteps(int steps);
  void PutIntoFixedForm();

  Machine machine_;
  Trace& trace_;
  const Transfer& transfer_;
  DBaction& schedule_;
  std::map<std::pair<std::string, std::string>, Standing> standing_;  // by file and line
};

}  // namespace ondura
