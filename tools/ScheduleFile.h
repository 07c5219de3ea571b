#pragma once

#include <string>
#include <vector>

#include "platform/machine.h"
#include "schedule/schedule_record.h"

namespace ondura {

// The schedule file of one user, as lines: those that the tool does not touch keep every byte.
class ScheduleFile {
 public:
  // Reads the file; a missing one is idle and has no records. Lines that are no whole record are counted
  // and left out.
  ScheduleFile(const Machine& machine, std::string path);

  // True while the header word says that a job runs.
  [[nodiscard]] bool IsRunning() const;

  // The kind of job that the header names; "0" when idle.
  [[nodiscard]] const std::string& HeaderWord() const { return header_; }

  // In the order of the file, fields in UTF-8.
  [[nodiscard]] std::vector<ScheduleRecord> Records() const;

  // True for a file that is there and can't be read: it must not be taken for an empty one.
  [[nodiscard]] bool IsUnreadable() const { return is_unreadable_; }

  // The number of lines without a time key, each of which makes the service delete the whole file.
  [[nodiscard]] int LinesWithoutKey() const { return lines_without_key_; }

  // The number of lines that are no records.
  [[nodiscard]] int BrokenLines() const { return broken_lines_; }

  void Add(const ScheduleRecord& record);
  void Remove(std::size_t index);
  void Clear() { lines_.clear(); }

  // Writes an idle file with all records, or removes the file when there is none. False when it could not,
  // and the old bytes are put back, and for a file that could not be read.
  [[nodiscard]] bool Save() const;

 private:
  Machine machine_;
  std::string path_;
  std::string header_ = "0";
  std::vector<std::string> lines_;  // code page bytes
  int broken_lines_ = 0;
  int lines_without_key_ = 0;
  bool is_unreadable_ = false;
};

}  // namespace ondura
