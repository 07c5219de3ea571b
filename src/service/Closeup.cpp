#include "service/Closeup.h"

#include <algorithm>
#include <optional>

#include "util/MachineLock.h"
#include "util/TextFiles.h"

namespace ondura {

namespace {

constexpr std::string_view kRunsOnce = "4";

}  // namespace

void Closeup::Closeupoperation() {
  DBaction& schedule = context_.schedule_file();
  Scheduler& scheduler = context_.services().scheduler;
  context_.job.keys.WriteStatus(StatusWord::kClosedUp);
  context_.trace().User(" 4 : " + schedule.schvTemp.nexttime);
  std::optional<MachineLock> lock;
  lock.emplace(context_.machine().mutexes, MachineLock::kPatienceOfAHost);
  ScheduleRecord* const record = TakeOverChanges();
  if (schedule.schvTemp.repeatkind == kRunsOnce) {
    if (record) record->nexttime.clear();
    if (record) record->sortkey.clear();
  } else {
    const MoveOutcome outcome = scheduler.sch_CheckRepeatAppend();
    context_.trace().User(" 5 : " + schedule.schvTemp.nexttime);
    // One that stays where it is would run on every tick.
    if (record && outcome != MoveOutcome::kMoved) scheduler.NoteStanding(*record, Standing::kNotAgain);
    if (record && outcome == MoveOutcome::kMoved) {
      record->nexttime = schedule.schvTemp.nexttime;
      record->sortkey = schedule.schvTemp.sortkey;
    }
  }
  context_.started.Lower();
  if (record) schedule.DB_WriteRecord();
  lock.reset();
  context_.services().progress.ResetBackupProgressIni();
}

// A job lasts for hours, and the user may have changed the schedule meanwhile. The table is read anew, so
// that the rewrite keeps what was added or changed; an occurrence that was moved or removed stays as the user
// left it, and a record that now repeats in another way moves in that way. Null where nothing is to be moved.
// A file that can't be read just now is rewritten from the table as it is.
ScheduleRecord* Closeup::TakeOverChanges() {
  DBaction& schedule = context_.schedule_file();
  Files& files = context_.machine().files;
  if (!schedule.Selected() || !files.Exists(schedule.ScheduleFilePath)) return nullptr;
  const ScheduleRecord ours = *schedule.Selected();
  const std::vector<ScheduleRecord> table = schedule.ScheduleTable;
  const std::int16_t count = schedule.RecordCount;
  schedule.DB_ReadSchData("");
  if (schedule.RecordCount <= 0) {
    const auto bytes = files.Read(schedule.ScheduleFilePath);
    if (bytes && LinesOf(*bytes).size() < 2) return nullptr;
    schedule.ScheduleTable = table;
    schedule.RecordCount = count;
    return schedule.Selected();
  }
  schedule.SelectedRecord = IndexOf(ours);
  if (const ScheduleRecord* const found = schedule.Selected()) {
    schedule.schvTemp.repeatkind = found->repeatkind;
    schedule.schvTemp.daymask = found->daymask;
    context_.services().scheduler.SetDayFlags(found->daymask);
  }
  return schedule.Selected();
}

// What else is in a line may have changed.
std::int16_t Closeup::IndexOf(const ScheduleRecord& ours) {
  const DBaction& schedule = context_.schedule_file();
  const auto begin = schedule.ScheduleTable.begin();
  const auto end = begin + schedule.RecordCount;
  auto found = std::find(begin, end, ours);
  if (found == end) {
    found = std::find_if(begin, end, [&](const ScheduleRecord& record) {
      return record.recordno == ours.recordno && record.nexttime == ours.nexttime &&
             record.sortkey == ours.sortkey;
    });
  }
  return found == end ? std::int16_t{-1} : static_cast<std::int16_t>(found - begin);
}

}  // namespace ondura
