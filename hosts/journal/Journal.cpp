#include "Journal.h"

#include <algorithm>

#include "text/text.h"
#include "util/date_text.h"

namespace ondura {

namespace {

constexpr std::string_view kFolder = "Journal";
constexpr std::string_view kEnding = ".jsonl";
constexpr std::string_view kMonthPicture = "yyyy-mm";

}  // namespace

std::string Journal::Folder() const { return WithBackslash(installation_.DataFile(kFolder)); }

bool Journal::Append(const JournalEntry& entry) {
  machine_.folders.Make(WithoutLast(Folder()));
  const std::string path = Folder() + FormatDate(kMonthPicture, entry.at) + std::string{kEnding};
  std::string line = JournalLine(entry, machine_.clock);
  if (mended_ != path && EndsInTheMiddle(path)) line.insert(0, "\n");
  const bool is_written = machine_.files.Append(path, line, IfMissing::kCreate);
  mended_ = is_written ? path : "";
  return is_written;
}

// The rest of a line that a full disk or a power cut left.
bool Journal::EndsInTheMiddle(const std::string& path) const {
  const auto bytes = machine_.files.Read(path);
  return bytes && !bytes->empty() && bytes->back() != '\n';
}

std::vector<std::string> Journal::Months() const {
  std::vector<std::string> months;
  machine_.folders.List(WithoutLast(Folder()), [&](const FolderEntry& file) {
    if (!file.is_folder && file.name.ends_with(kEnding)) {
      months.emplace_back(file.name.substr(0, file.name.size() - kEnding.size()));
    }
    return Visit::kContinue;
  });
  std::ranges::sort(months);
  return months;
}

std::vector<JournalEntry> Journal::Read(LocalTime from, LocalTime to) const {
  std::vector<JournalEntry> entries;
  for (const std::string& month : Months()) {
    if (month < FormatDate(kMonthPicture, from) || month > FormatDate(kMonthPicture, to)) continue;
    const std::string bytes = machine_.files.Read(Folder() + month + std::string{kEnding}).value_or("");
    for (const std::string& line : Split(bytes, "\n")) {
      const auto entry = EntryOfLine(line);
      if (entry && entry->at >= from && entry->at < to) entries.push_back(*entry);
    }
  }
  return entries;
}

std::vector<JournalEntry> Journal::ReadAll() const {
  using namespace std::chrono;
  return Read(local_days{year{0} / 1 / 1}, local_days{year{9999} / 12 / 31});
}

}  // namespace ondura
