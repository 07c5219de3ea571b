#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/machine.h"
#include "profile/Installation.h"
#include "reporting/Trace.h"
#include "schedule/schedule_record.h"

namespace ondura {

// The schedule file of one user at a time, and the table that it is read into and written back from.
//
// The file is text in the system code page: a header word, then one record a line. Other processes write
// it too and nothing is locked, so every routine opens, works and closes at once. The state is public: the
// dispatch pass, the job and the Scheduler work on the same table.
class DBaction {
 public:
  DBaction(const Machine& machine, const Installation& installation, Trace& trace)
      : machine_(machine), installation_(installation), trace_(trace) {}

  // RecordCount records from index 0 and one spare element after them.
  std::vector<ScheduleRecord> ScheduleTable = std::vector<ScheduleRecord>(1);

  // A file may hold more lines than the count can tell. The table then has the first 32767 records, and
  // the lines after them are carried as they are into the next rewrite.
  std::int16_t RecordCount = 0;

  // An index into ScheduleTable, or -1.
  std::int16_t SelectedRecord = -1;

  // A copy of the record being handled: a field that callers from outside have too. The moving routines work
  // on it in place, and the mail is made from it after the record has moved on.
  ScheduleRecord schvTemp;

  // The record at SelectedRecord; null if there is none, or no longer.
  ScheduleRecord* Selected();

  // The file being worked on, set afresh for each user before any routine is called.
  std::string ScheduleFilePath;

  // Rewrites the current user's file from the table under the idle header. A record with a blank `nexttime`
  // is left out; a file that would hold no record is deleted. Sets ScheduleFilePath.
  void DB_WriteRecord();

  // Fills the table from ScheduleFilePath in one read of the file and returns the index of the record with
  // the smallest key as text, the first of equals; 0 if there is none. A file that is missing, unreadable or
  // headed by another word than "0", "1" or "2" holds nothing: RecordCount is 0.
  //
  // With a key the table is only reset to two blank elements; RecordCount stays.
  std::int16_t DB_ReadSchData(std::string_view key);

  // True when the file may be read by its header, which is looked at only if `path` is ScheduleFilePath.
  // Without a key, `lines` takes the lines after the header (the first 32767 of them). With one, the
  // result says whether a line's first field equals it, and `lines` stays.
  bool DB_ReadRecord(std::string_view key, std::string_view path, std::vector<std::string>& lines);

  // How many lines follow the header line, 32767 at most; 0 if the file is missing.
  std::int16_t CountScheduleRecords(std::string_view path);

 private:
  [[nodiscard]] std::string WholeText() const;

  Machine machine_;
  const Installation& installation_;
  Trace& trace_;

  // The bytes after the last line that the table holds.
  std::string lines_behind_table_;
};

}  // namespace ondura
