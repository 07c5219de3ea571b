#include "engines/restic/snapshot_files.h"

#include <algorithm>

#include "text/text.h"

namespace ondura::engines {

namespace {

// "2026-11-23", then with hours and minutes, then with seconds.
constexpr std::size_t kDateLength = 10;
constexpr std::size_t kMinuteLength = 16;
constexpr std::size_t kSecondLength = 19;

std::optional<int> Digits(std::string_view text, std::size_t at, std::size_t count) {
  if (at + count > text.size()) return std::nullopt;
  const auto number = ParseInt16(text.substr(at, count));
  if (!number || *number < 0) return std::nullopt;
  return *number;
}

std::optional<LocalTime> ParseTime(std::string_view text) {
  const auto year = Digits(text, 0, 4);
  const auto month = Digits(text, 5, 2);
  const auto day = Digits(text, 8, 2);
  if (!year || !month || !day) return std::nullopt;
  const std::chrono::year_month_day date{std::chrono::year{*year},
                                         std::chrono::month{static_cast<unsigned>(*month)},
                                         std::chrono::day{static_cast<unsigned>(*day)}};
  if (!date.ok()) return std::nullopt;
  const auto part = [&](std::size_t at) { return Digits(text, at, 2).value_or(0); };
  return LocalTime{std::chrono::local_days{date}} + std::chrono::hours{part(11)} +
         std::chrono::minutes{part(14)} + std::chrono::seconds{part(17)};
}

// The last second that the text takes in.
std::optional<LocalTime> EndOf(std::string_view when) {
  const auto begin = ParseTime(when);
  if (!begin) return std::nullopt;
  if (when.size() == kDateLength) return *begin + std::chrono::days{1} - std::chrono::seconds{1};
  if (when.size() == kMinuteLength) return *begin + std::chrono::seconds{59};
  if (when.size() == kSecondLength) return begin;
  return std::nullopt;
}

}  // namespace

std::optional<LocalTime> TimeOfSnapshot(std::string_view text) {
  return text.size() >= kSecondLength ? ParseTime(text) : std::nullopt;
}

const ResticSnapshot* PickSnapshot(const std::vector<ResticSnapshot>& snapshots, std::string_view when) {
  if (snapshots.empty()) return nullptr;
  if (when.empty() || when == "latest") return &snapshots.back();
  if (const auto end = EndOf(when)) {
    const auto later = std::ranges::find_if(snapshots, [&](const ResticSnapshot& snapshot) {
      return TimeOfSnapshot(snapshot.time).value_or(LocalTime{}) > *end;
    });
    return later == snapshots.begin() ? nullptr : &*std::prev(later);
  }
  const auto found = std::ranges::find_if(
      snapshots, [&](const ResticSnapshot& snapshot) { return snapshot.id.starts_with(when); });
  return found == snapshots.end() ? nullptr : &*found;
}

bool ForEachNode(ResticStore& store, const std::string& snapshot_id,
                 const std::function<void(const ResticNode& node)>& visit) {
  return store.Check(store.program().Do(
      {.arguments = {"ls", "--json", snapshot_id}, .take_line = [&](const PipedLine& line) {
         if (line.stream != PipeStream::kOutput) return;
         if (const auto node = ParseNode(line.text)) visit(*node);
       }}));
}

}  // namespace ondura::engines
