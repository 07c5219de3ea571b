#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "JournalEntry.h"
#include "platform/machine.h"
#include "profile/Installation.h"

namespace ondura {

// What became of every occurrence, kept for years in <data>Journal\<yyyy-mm>.jsonl: one line of JSON an
// event, in the order in which the hosts noted them. A line is added by one write, and a line that was cut
// short by a full disk or a power cut costs no other one.
class Journal {
 public:
  // Both outlive the journal.
  Journal(const Machine& machine, const Installation& installation)
      : machine_(machine), installation_(installation) {}

  // False when the line could not be written.
  bool Append(const JournalEntry& entry);

  // What was noted from `from` on and before `to`, oldest first. Lines that can't be read are left out.
  [[nodiscard]] std::vector<JournalEntry> Read(LocalTime from, LocalTime to) const;

  // All of it.
  [[nodiscard]] std::vector<JournalEntry> ReadAll() const;

 private:
  [[nodiscard]] std::string Folder() const;
  [[nodiscard]] std::vector<std::string> Months() const;
  [[nodiscard]] bool EndsInTheMiddle(const std::string& path) const;

  const Machine& machine_;
  const Installation& installation_;
  std::string mended_;  // the file whose end was looked at and written to since
};

// The line of an entry with its line end, and back; std::nullopt for a text that is no such line. Fields that
// are not known are passed over, so that an older release reads what a newer one wrote.
std::string JournalLine(const JournalEntry& entry, Clock& clock);
std::optional<JournalEntry> EntryOfLine(std::string_view line);

}  // namespace ondura
