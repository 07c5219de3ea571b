#include "schedule/schedule_record.h"

#include <array>

namespace ondura {

namespace {

using Field = std::string ScheduleRecord::*;

// The fields as a line holds them. `mailoption` comes before `maillog` there: the other way round than
// in memory.
constexpr std::array<Field, 12> kFieldsInFileOrder{
    &ScheduleRecord::recordno,  &ScheduleRecord::schname,    &ScheduleRecord::nexttime,
    &ScheduleRecord::schedtime, &ScheduleRecord::onceflag,   &ScheduleRecord::schtext,
    &ScheduleRecord::mailids,   &ScheduleRecord::mailoption, &ScheduleRecord::maillog,
    &ScheduleRecord::sortkey,   &ScheduleRecord::repeatkind, &ScheduleRecord::daymask,
};

}  // namespace

ScheduleRecord RecordOfLine(std::string_view line) {
  ScheduleRecord record;
  for (std::size_t i = 0; i < kFieldsInFileOrder.size(); ++i) {
    const bool is_last = i + 1 == kFieldsInFileOrder.size();
    const auto end = is_last ? std::string_view::npos : line.find(kFieldSeparator);
    record.*kFieldsInFileOrder[i] = line.substr(0, end);
    if (end == std::string_view::npos) break;
    line.remove_prefix(end + kFieldSeparator.size());
  }
  return record;
}

std::string LineOfRecord(const ScheduleRecord& record) {
  std::string line;
  for (const Field field : kFieldsInFileOrder) {
    if (field != kFieldsInFileOrder.front()) line += kFieldSeparator;
    line += record.*field;
  }
  return line;
}

}  // namespace ondura
