#pragma once

#include <string>
#include <vector>

#include "platform/local_time.h"
#include "schedule/schedule_record.h"

namespace ondura {

// One schedule in the words of the command line.
struct SchedulePlan {
  std::string at;               // start_time.h lists the words
  std::string repeat = "once";  // once, daily, monthly, "weekly:mon,wed"
  std::string kind = "files";   // files, sql, system-state, exchange, mailbox
  std::vector<std::string> mail;
  std::string mail_when = "failure";  // never, failure, always
  std::string name;
};

// The record of a plan. A weekly plan whose date is not one of its days begins on the first of them after it.
// Throws Failure (kUsage) for words that mean nothing.
ScheduleRecord RecordOf(const SchedulePlan& plan, LocalTime now);

// The words of a record's fields; a field of no known meaning comes back as it is.
std::string KindWord(const std::string& recordno);
std::string RepeatWord(const ScheduleRecord& record);
std::string MailWord(const ScheduleRecord& record);

// "2026-11-14 12:30" of a key; a key of another form comes back as it is.
std::string TimeWord(const std::string& sortkey);

}  // namespace ondura
