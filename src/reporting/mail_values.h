#pragma once

#include <optional>
#include <string>

#include "platform/local_time.h"

namespace ondura {

// What a notification mail says about a run, beside product and user. The dispatch loop and the job fill it;
// one for each component instance.
struct MailValues {
  // The record's detail flag: "1" for the extract of the session log.
  std::string ScheduleMailDetail;
  // The user's short date picture, such as "M/d/yyyy".
  std::string ShortDateFormat;
  // The session log of the run.
  std::string SessionLogPath;
  // The main result sentence of the run.
  std::string JobStatusText;
  // The occurrence; mail to a user whose dates begin with the day changes it.
  std::optional<LocalTime> ScheduledTime;
  // The kind of backup between blanks, such as " SQL Server "; one blank for a plain one.
  std::string StageWord;
  // What is under "Possible reason,"; may be empty.
  std::string FailureReason;
  // The subject of the last mail, after which log extraction puts the closing figures of the run.
  std::string MailSubject;
  // The scheduled time as text, and the schedule record's own, which is taken where the first is empty.
  std::string ScheduledTimeText;
  std::string ScheduleTimeField;
};

}  // namespace ondura
