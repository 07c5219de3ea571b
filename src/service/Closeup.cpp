#include "service/Closeup.h"

#include <algorithm>

namespace ondura {

namespace {

constexpr std::string_view kRunsOnce = "4";

}  // namespace

void Closeup::Closeupoperation() {
  DBaction& schedule = context_.schedule_file();
  context_.job.keys.WriteStatus("4");
  context_.trace().User(" 4 : " + schedule.schvTemp.nexttime);
  const bool record_stands = TakeOverChanges();
  const auto index = static_cast<std::size_t>(std::max<int>(schedule.SelectedRecord, 0));
  if (schedule.schvTemp.repeatkind == kRunsOnce) {
    if (record_stands) schedule.ScheduleTable.at(index).nexttime.clear();
    if (record_stands) schedule.ScheduleTable.at(index).sortkey.clear();
  } else {
    context_.services().scheduler.sch_CheckRepeatAppend();
    context_.trace().User(" 5 : " + schedule.schvTemp.nexttime);
    if (record_stands) {
      schedule.ScheduleTable.at(index).nexttime = schedule.schvTemp.nexttime;
      schedule.ScheduleTable.at(index).sortkey = schedule.schvTemp.sortkey;
    }
  }
  context_.started.Lower();
  if (record_stands) schedule.DB_WriteRecord();
  context_.services().progress.ResetBackupProgressIni();
}

// A job lasts for hours, and the user may have changed the schedule meanwhile. The table is read anew, so
// that the rewrite keeps what was added, and a record that was changed or removed stays as the user left it.
// A file that can't be read just now is rewritten from the table as it stands.
bool Closeup::TakeOverChanges() {
  DBaction& schedule = context_.schedule_file();
  if (schedule.SelectedRecord < 0) return false;
  const ScheduleRecord ours = schedule.ScheduleTable.at(static_cast<std::size_t>(schedule.SelectedRecord));
  if (!context_.machine().files.Exists(schedule.ScheduleFilePath)) return false;
  const std::vector<ScheduleRecord> table = schedule.ScheduleTable;
  const std::int16_t count = schedule.RecordCount;
  schedule.DB_ReadSchData("");
  if (schedule.RecordCount <= 0) {
    schedule.ScheduleTable = table;
    schedule.RecordCount = count;
    return true;
  }
  const auto last = schedule.ScheduleTable.begin() + schedule.RecordCount;
  const auto found = std::find(schedule.ScheduleTable.begin(), last, ours);
  if (found == last) return false;
  schedule.SelectedRecord = static_cast<std::int16_t>(found - schedule.ScheduleTable.begin());
  return true;
}

}  // namespace ondura
