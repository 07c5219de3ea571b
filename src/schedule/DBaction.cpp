#include "schedule/DBaction.h"

#include <algorithm>
#include <limits>

#include "schedule/rewrite.h"
#include "text/text.h"
#include "util/TextFiles.h"

namespace ondura {

namespace {

constexpr std::size_t kMostRecords = std::numeric_limits<std::int16_t>::max();

// The words of kinds "3" to "5" bar the file until the dispatch pass has reset them.
bool MayBeRead(std::string_view header) { return header == "0" || header == "1" || header == "2"; }

std::size_t CountLines(std::string_view text) {
  std::size_t count = 0;
  for (; !text.empty(); ++count) TakeLine(text);
  return count;
}

bool HasRecord(std::string_view lines, std::string_view recordno) {
  while (!lines.empty()) {
    const std::string_view line = TakeLine(lines);
    const auto end = line.find(kFieldSeparator);
    if (end != std::string_view::npos && line.substr(0, end) == recordno) return true;
  }
  return false;
}

}  // namespace

ScheduleRecord* DBaction::Selected() {
  if (SelectedRecord < 0 || SelectedRecord >= RecordCount) return nullptr;
  return &ScheduleTable.at(static_cast<std::size_t>(SelectedRecord));
}

void DBaction::DB_WriteRecord() {
  ScheduleFilePath = installation_.UserFile(kScheduleFileName);
  RewriteOrPutBack(machine_.files, ScheduleFilePath, WholeText());
  trace_.User("  Next transfer time  " + schvTemp.nexttime);
  // A file that can't be looked at just now may hold records; only one seen to be without any goes.
  const auto written = machine_.files.Read(ScheduleFilePath);
  if (written && CountLines(*written) < 2) machine_.files.Remove(ScheduleFilePath, Removal::kPlain);
}

std::string DBaction::WholeText() const {
  std::string text = std::string{"0"}.append(kLineEnd);
  const auto count = std::min(ScheduleTable.size(), static_cast<std::size_t>(std::max<int>(RecordCount, 0)));
  for (std::size_t i = 0; i < count; ++i) {
    const ScheduleRecord& record = ScheduleTable[i];
    if (Trim(record.nexttime).empty()) continue;
    text.append(machine_.code_page.FromUtf8(LineOfRecord(record))).append(kLineEnd);
  }
  return text + lines_behind_table_;
}

std::int16_t DBaction::DB_ReadSchData(std::string_view key) {
  ScheduleTable.assign(key.empty() ? 1 : 2, ScheduleRecord{});
  lines_behind_table_.clear();
  if (!key.empty()) return 0;
  RecordCount = 0;

  const auto bytes = machine_.files.Read(ScheduleFilePath);
  if (!bytes) return 0;
  std::string_view lines = *bytes;
  if (!MayBeRead(TakeLine(lines))) return 0;

  std::string earliest_key{kNoOccurrenceKey};
  std::int16_t earliest = 0;
  for (std::size_t i = 0; i < kMostRecords && !lines.empty(); ++i) {
    ScheduleRecord& record = ScheduleTable.back();
    record = RecordOfLine(machine_.code_page.ToUtf8(TakeLine(lines)));
    if (record.sortkey < earliest_key) {
      earliest_key = record.sortkey;
      earliest = RecordCount;
    }
    ScheduleTable.emplace_back();
    RecordCount = static_cast<std::int16_t>(i + 1);
  }
  lines_behind_table_ = lines;
  return earliest;
}

bool DBaction::DB_ReadRecord(std::string_view key, std::string_view path, std::vector<std::string>& lines) {
  const auto bytes = machine_.files.Read(path);
  if (!bytes) return false;
  std::string_view rest = *bytes;
  const std::string_view header = path == ScheduleFilePath ? TakeLine(rest) : std::string_view{};
  if (!MayBeRead(header)) return false;
  if (!key.empty()) return HasRecord(rest, machine_.code_page.FromUtf8(key));
  lines.clear();
  while (!rest.empty() && lines.size() < kMostRecords) {
    lines.push_back(machine_.code_page.ToUtf8(TakeLine(rest)));
  }
  return true;
}

std::int16_t DBaction::CountScheduleRecords(std::string_view path) {
  const auto bytes = machine_.files.Read(path);
  const std::size_t count = bytes ? CountLines(*bytes) : 0;
  return static_cast<std::int16_t>(std::min(count > 0 ? count - 1 : 0, kMostRecords));
}

}  // namespace ondura
