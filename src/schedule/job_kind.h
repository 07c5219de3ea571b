#pragma once

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

namespace ondura {

// What a scheduled job backs up. Each kind but the first has a stage that prepares its data.
enum class JobKind { kFiles, kSqlServer, kSystemState, kExchangeStore, kExchangeBrick };

struct JobKindRow {
  JobKind kind;
  std::string_view code;  // in records and, while such a job runs, in the header line: one character
  std::string_view word;  // for the tool
};

inline constexpr std::array kJobKinds = {
    JobKindRow{JobKind::kFiles, "1", "files"},
    JobKindRow{JobKind::kSqlServer, "2", "sql"},
    JobKindRow{JobKind::kSystemState, "3", "system-state"},
    JobKindRow{JobKind::kExchangeStore, "4", "exchange"},
    JobKindRow{JobKind::kExchangeBrick, "5", "mailbox"},
};

// The kind whose code is exactly `code`. std::nullopt for another, which runs as a job of files.
constexpr std::optional<JobKind> JobKindOf(std::string_view code) {
  const auto found = std::ranges::find(kJobKinds, code, &JobKindRow::code);
  if (found == kJobKinds.end()) return std::nullopt;
  return found->kind;
}

constexpr std::string_view CodeOf(JobKind kind) {
  return std::ranges::find(kJobKinds, kind, &JobKindRow::kind)->code;
}

}  // namespace ondura
