#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/local_time.h"

namespace ondura {

// What a line of the journal tells.
enum class JournalEvent {
  kHostStarted,  // a host begins to look after the machine
  kHostLeft,     // and leaves as it was asked to
  kHostWaits,    // it makes no passes; `words` says why. Empty words: it goes on
  kBegan,        // a pass begins to serve an occurrence
  kOutcome,      // what became of an occurrence; there is one for each
  kNotice,       // somebody was told, or could not be; `words` says whom and what
};

// What became of one occurrence of a schedule.
enum class Outcome {
  kSucceeded,    // something was saved, or nothing had changed
  kIncomplete,   // it ran, and some of the selection is not saved
  kFailed,       // it ran, and nothing was saved
  kCancelled,    // a person stopped it
  kCutOff,       // its cut-off time came
  kMissed,       // it came too late, and the record moved on
  kSkipped,      // it passed while another job of the machine ran, or while the host was away
  kDisabled,     // the user's schedules were switched off
  kInterrupted,  // the host ended in the middle of it
};

struct OutcomeRow {
  Outcome outcome;
  std::string_view word;   // in the journal and in JSON
  std::string_view words;  // for people
  bool is_good;            // what was to be saved is saved
};

inline constexpr std::array kOutcomes = {
    OutcomeRow{Outcome::kSucceeded, "succeeded", "succeeded", true},
    OutcomeRow{Outcome::kIncomplete, "incomplete", "incomplete", false},
    OutcomeRow{Outcome::kFailed, "failed", "failed", false},
    OutcomeRow{Outcome::kCancelled, "cancelled", "cancelled", false},
    OutcomeRow{Outcome::kCutOff, "cut_off", "cut off", false},
    OutcomeRow{Outcome::kMissed, "missed", "missed", false},
    OutcomeRow{Outcome::kSkipped, "skipped", "skipped", false},
    OutcomeRow{Outcome::kDisabled, "disabled", "switched off", false},
    OutcomeRow{Outcome::kInterrupted, "interrupted", "interrupted", false},
};

const OutcomeRow& RowOf(Outcome outcome);

// One line. What does not belong to the event stays empty.
struct JournalEntry {
  LocalTime at{};  // when it was noted
  JournalEvent event = JournalEvent::kOutcome;
  std::string host{};  // "service" or "background"
  std::string user{};
  std::string kind{};  // word of the job's kind (job_kind.h), such as "files"
  std::string name{};  // of the schedule
  std::optional<LocalTime> due{};
  std::optional<Outcome> outcome{};
  std::optional<int> code{};  // the engine's result that decided, where an engine ran
  std::string words{};        // what happened and why, for people
  std::optional<LocalTime> began{};
  std::optional<LocalTime> ended{};
  std::optional<std::uint64_t> files{};  // saved by this run
  std::optional<std::uint64_t> bytes{};
  // The values that decided, by name: "units_late", "STARTMISSEDSCH", "ScheduleDisable", "ran_instead".
  std::vector<std::pair<std::string, std::string>> because{};

  friend bool operator==(const JournalEntry&, const JournalEntry&) = default;
};

}  // namespace ondura
