#pragma once

#include <string>
#include <string_view>

namespace ondura {

// Stands between two fields of a record line: two backspace characters.
inline constexpr std::string_view kFieldSeparator = "\b\b";

// The sort key that means no occurrence: it is greater than every real one, so that a search for the
// earliest starts with it.
inline constexpr std::string_view kNoOccurrenceKey = "300012121503";

// The bare name of a user's schedule file.
inline constexpr std::string_view kScheduleFileName = "scheduleData.txt";

// One kind of scheduled job of one user, with its next occurrence. All fields are text as it is in
// the file; a field that a line lacks is empty.
struct ScheduleRecord {
  std::string recordno;    // code of the job's kind (job_kind.h)
  std::string schname;     // carried, never looked at
  std::string nexttime;    // next occurrence as date and time; blank: dropped at the next rewrite
  std::string schedtime;   // the scheduled time as shown to people
  std::string onceflag;    // "8": dropped when missed
  std::string schtext;     // carried, never looked at
  std::string mailids;     // addresses, joined by ";"
  std::string maillog;     // "1": the mail carries the log extract
  std::string mailoption;  // "3" always mail, "2" unless the job ended as success
  std::string sortkey;     // YYYYMMDDHHmm of nexttime
  std::string repeatkind;  // "4" once, "5" monthly, "6" on the days of daymask
  std::string daymask;     // seven digits, Sunday to Saturday, perhaps without leading zeros

  friend bool operator==(const ScheduleRecord&, const ScheduleRecord&) = default;
};

// The record of a line. The twelfth field is whatever follows the eleventh separator.
ScheduleRecord RecordOfLine(std::string_view line);

// The line of a record, without a line end.
std::string LineOfRecord(const ScheduleRecord& record);

}  // namespace ondura
