#include "backupset/NetworkPaths.h"

#include <algorithm>
#include <chrono>

#include "backupset/StampText.h"
#include "text/Tokenizer.h"
#include "text/text.h"
#include "text/utf16.h"
#include "util/TextFiles.h"
#include "util/date_text.h"

namespace ondura {

namespace {

constexpr std::size_t kTracedField = 1;
constexpr std::string_view kListPicture = "mm-dd-yyyy HH:MM:SS";
constexpr std::chrono::hours kShift{1};

// A listing here has no handle to show; what a reader of the trace looks for is the invalid one.
constexpr std::string_view kNoHandle = "-1";
constexpr std::string_view kSomeHandle = "1";

std::string EntryName(std::size_t row) { return "UNC" + std::to_string(row + 1); }

std::string ListLine(std::string_view folder, const FolderEntry& file) {
  std::string line{folder};
  line.append(file.name).append("/").append(std::to_string(file.size_bytes));
  for (const LocalTime stamp : {file.modified, file.modified + kShift, file.modified - kShift}) {
    line.append("/").append(FormatDate(kListPicture, stamp));
  }
  return line.append(kLineEnd);
}

}  // namespace

std::string NetworkPaths::ReadProfilefromRegistryUNCCountSch() const {
  return store_.ReadProfilefromRegistryWithoutDeCrypt(profile_keys::kUncCount);
}

void NetworkPaths::ReadProfilefromRegistryUNCSch() {
  SizeTable(ReadProfilefromRegistryUNCCountSch());
  for (std::size_t row = 0; row < table_.size(); ++row) {
    std::string entry = store_.ReadProfilefromRegistryWithoutDeCrypt(EntryName(row));
    if (entry.empty()) entry = store_.ReadProfilefromRegistryWithoutDeCrypt(EntryName(row));
    table_[row] = Parse(entry);
  }
}

void NetworkPaths::ReadUNCListfromRegistryProfile() {
  SizeTable(store_.ReadSharedRegistryValue(profile_keys::kUncCount));
  for (std::size_t row = 0; row < table_.size(); ++row) {
    std::string entry = store_.ReadSharedRegistryValue(EntryName(row));
    if (entry.empty()) entry = store_.ReadSharedRegistryValue(EntryName(row));
    table_[row] = Parse(entry);
    trace_.plain().WriteTrace("UNCPath(loopvar - 1, 1) : " + table_[row][kTracedField]);
  }
}

void NetworkPaths::ReadUNCTable() {
  const std::string count = store_.ReadSharedRegistryValue(profile_keys::kUncCount);
  trace_.User("UNCCount : " + count);
  ReadUNCListfromRegistryProfile();
}

void NetworkPaths::SizeTable(std::string_view count) {
  const std::int64_t entries = ParseInteger(count).value_or(0);
  table_.assign(static_cast<std::size_t>(std::clamp<std::int64_t>(entries, 0, kMostEntries)), {});
}

UNCEntry NetworkPaths::Parse(std::string_view text) {
  Tokenizer tokens;
  tokens.init(text);
  tokens.setSeparator(";");
  UNCEntry entry;
  for (std::string& field : entry) field = tokens.nextToken();
  return entry;
}

void NetworkPaths::ScanMappedPair(FileWriter& stream, std::string_view sSource, std::string_view sTarget,
                                  FolderPairQueues& queues, std::size_t& index) {
  const std::string source = WithBackslash(sSource);
  const std::string target = WithBackslash(sTarget);
  ++index;
  bool is_begun = false;
  const auto take = [&](const FolderEntry& entry) {
    is_begun = true;
    if (entry.is_folder) {
      const std::string name = std::string{entry.name} + "\\";
      queues.source.push_back(source + name);
      queues.target.push_back(target + name);
      machine_.pump.Pump();
    } else if (!entry.leads_off_drive && StampText::IsStampable(entry.modified)) {
      stream.Append(ToUtf16(ListLine(source, entry)));
    }
    return Visit::kContinue;
  };
  // A listing that breaks off keeps what it has told: the other form would tell it again.
  if (machine_.folders.List(target, take) || is_begun || source == target) return;
  const bool is_listed = machine_.folders.List(source, take);
  trace_.plain().WriteTrace("FindFirstFile = : " + std::string{is_listed ? kSomeHandle : kNoHandle});
}

}  // namespace ondura
