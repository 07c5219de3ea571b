#include "ScheduleFile.h"

#include <utility>

#include "schedule/job_kind.h"
#include "schedule/rewrite.h"
#include "schedule/schedule_header.h"
#include "text/text.h"
#include "util/TextFiles.h"

namespace ondura {

namespace {

bool HasKey(const std::string& line) { return !RecordOfLine(line).sortkey.empty(); }

// A line with every separator comes back from its record as it was. Without a key the record would cost
// the whole file.
bool IsWhole(const std::string& line) { return HasKey(line) && LineOfRecord(RecordOfLine(line)) == line; }

}  // namespace

ScheduleFile::ScheduleFile(const Machine& machine, std::string path)
    : machine_(machine), path_(std::move(path)) {
  const auto bytes = machine_.files.Read(path_);
  is_unreadable_ = !bytes && machine_.files.Exists(path_);
  if (!bytes) return;
  auto lines = LinesOf(*bytes);
  if (lines.empty()) return;
  header_ = Trim(lines.front());
  lines.erase(lines.begin());
  for (auto& line : lines) {
    if (IsWhole(line)) {
      lines_.push_back(std::move(line));
    } else {
      ++broken_lines_;
      lines_without_key_ += HasKey(line) ? 0 : 1;
    }
  }
}

bool ScheduleFile::IsRunning() const { return JobKindOf(header_).has_value(); }

std::vector<ScheduleRecord> ScheduleFile::Records() const {
  std::vector<ScheduleRecord> records;
  records.reserve(lines_.size());
  for (const auto& line : lines_) records.push_back(RecordOfLine(machine_.code_page.ToUtf8(line)));
  return records;
}

void ScheduleFile::Add(const ScheduleRecord& record) {
  lines_.push_back(machine_.code_page.FromUtf8(LineOfRecord(record)));
}

void ScheduleFile::Remove(std::size_t index) {
  lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(index));
}

bool ScheduleFile::Save() const {
  if (is_unreadable_) return false;
  if (lines_.empty()) return !machine_.files.Exists(path_) || machine_.files.Remove(path_, Removal::kPlain);
  std::string bytes = std::string{kIdleWord}.append(kLineEnd);
  for (const auto& line : lines_) bytes.append(line).append(kLineEnd);
  return RewriteOrPutBack(machine_.files, path_, bytes);
}

}  // namespace ondura
