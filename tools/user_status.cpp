#include "user_status.h"

#include <algorithm>
#include <array>
#include <chrono>

#include "HostNotes.h"
#include "ScheduleFile.h"
#include "engine/status_word.h"
#include "profile/profile_paths.h"
#include "reporting/Progress.h"
#include "result_words.h"
#include "schedule/record_dates.h"
#include "schedule_plan.h"
#include "text/text.h"
#include "util/TextFiles.h"

namespace ondura {

namespace {

constexpr std::chrono::days kFarAhead{32};

struct StateWords {
  StatusWord status;
  std::string_view state;
  std::string_view words;
};

constexpr std::array kStates = {
    StateWords{StatusWord::kStarting, "interrupted",
               "a job began and was cut off; the service clears this when it starts"},
    StateWords{StatusWord::kInteractive, "interactive", "an interactive backup is running"},
    StateWords{StatusWord::kFailed, "idle", "idle; the last job failed or was stopped"},
    StateWords{StatusWord::kStopAsked, "stopping", "a stop has been asked for"},
    StateWords{StatusWord::kCutOff, "idle", "idle; the last job was stopped at its cut-off time"},
};

constexpr std::array<std::string_view, 9> kFigures = {"Percentage",     "FileName",     "Backedup Files",
                                                      "Total Progress", "Time Elapsed", "Est Time",
                                                      "Tans Rate",      "FilePath",     "FilePer"};

void ReadState(const OpenedMachine& opened, const ScheduleFile& schedule, UserStatus& status) {
  const ProfileKeys& keys = opened.keys();
  const auto kept = StatusWordOf(keys.Read(profile_keys::kStatus));
  const auto found =
      std::ranges::find(kStates, kept, [](const StateWords& row) { return std::optional{row.status}; });
  status.state = found == kStates.end() ? "idle" : found->state;
  status.words = found == kStates.end() ? "idle" : found->words;
  if ((schedule.IsRunning() || opened.IsServed()) && kept != StatusWord::kStopAsked) {
    status.state = "running";
    status.words = schedule.IsRunning() ? "a " + KindWord(schedule.HeaderWord()) + " backup is running"
                                        : "a scheduled backup is running";
  }
}

// A monthly schedule is the longest that repeats. What is due later was moved there by a wrong clock, as a
// rule.
bool IsFar(const std::string& sortkey, LocalTime now) { return sortkey > SortKeyOf(now + kFarAhead); }

void ReadNextRun(const ScheduleFile& schedule, LocalTime now, UserStatus& status) {
  const auto records = schedule.Records();
  const auto next = std::ranges::min_element(records, {}, &ScheduleRecord::sortkey);
  if (next == records.end()) return;
  status.next = NextRun{TimeWord(next->sortkey), KindWord(next->recordno), IsFar(next->sortkey, now)};
}

// The result of a job begins with none, and an engine that crashes leaves it so.
std::string LastResultWords(int code, const UserStatus& status) {
  const bool has_ended = status.state == "idle" && !status.last_end.empty();
  if (code == 0 && has_ended) return "the engine ended without a result";
  if (code == 0 && status.state == "interrupted") return "the job was cut off before it had a result";
  return ResultWords(code);
}

std::string FirstLine(const OpenedMachine& opened, std::string_view file) {
  return TextFiles(opened.machine().files, opened.machine().code_page)
      .ReadFirstLine(opened.installation().UserFile(file), Encoding::kUtf16)
      .value_or("");
}

void ReadProgress(const OpenedMachine& opened, UserStatus& status) {
  const std::string file = opened.installation().UserFile(kBackupProgressFile);
  if (!opened.machine().files.Exists(file)) return;
  for (const auto& figure : kFigures) {
    const std::string value = opened.machine().profiles.ReadString({file, kBackupProgressSection, figure});
    if (!value.empty()) status.progress.emplace_back(figure, value);
  }
}

}  // namespace

UserStatus ReadUserStatus(const OpenedMachine& opened) {
  const ProfileKeys& keys = opened.keys();
  UserStatus status;
  status.user = opened.installation().CurrentUser;
  const ScheduleFile schedule(opened.machine(), opened.installation().UserFile(kScheduleFileName));
  ReadState(opened, schedule, status);
  status.last_end = keys.Read(profile_keys::kSchEndTime);
  if (const auto result = ParseInteger(keys.Read(profile_keys::kRetValue))) {
    const int code = static_cast<int>(*result);
    status.last_result = JobResult{code, LastResultWords(code, status)};
  }
  status.sentence = Trim(FirstLine(opened, kStatusTextFile));
  if (status.sentence.empty()) status.sentence = Trim(FirstLine(opened, kErrorTextFile));
  status.failures_in_a_row =
      static_cast<int>(ParseInteger(keys.Read(profile_keys::kBackupFailureDays)).value_or(0));
  const std::string disabled = keys.Read(profile_keys::kScheduleDisable);
  status.is_disabled = !disabled.empty() && disabled != "FALSE";
  status.host = HostNotes(opened.machine(), opened.installation()).EngineEnded(status.user);
  ReadNextRun(schedule, opened.machine().clock.Now(), status);
  const Quota quota{keys.Read(profile_keys::kQuotaUsed), keys.Read(profile_keys::kQuotaMax)};
  if (!quota.used_bytes.empty() || !quota.max_bytes.empty()) status.quota = quota;
  ReadProgress(opened, status);
  return status;
}

}  // namespace ondura
