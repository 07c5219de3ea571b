#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "job/AbortForms.h"
#include "job/JobContext.h"
#include "util/waits.h"

namespace ondura {

// Hours and minutes of a text "date time", such as "0905" for "01-31-2026 09:05:00". The minutes are cut by
// the length of the time, so a one-digit hour gives one digit of them. std::nullopt for a text without a
// colon.
std::optional<std::string> HourMinuteText(std::string_view date_and_time);

// The wait for the end of the transfer, with its two ways to end it early: the user's Cancel, which kills
// the engine when it does not end by itself, and the cut-off time of the schedule.
class TransferWait {
 public:
  TransferWait(JobContext& job, AbortForms& abort) : job_(job), abort_(abort) {}

  enum class End { kByItself, kCutOff };

  End Run(ProcessWatch& engine);

 private:
  void TestCancel();
  void TestHardStop();
  void StopHard(std::string_view trace_text);
  void EndByHardStop();

  JobContext& job_;
  AbortForms& abort_;
  int cancelPasses_ = 0;
  int hardStopPasses_ = 0;
  bool hardStopped_ = false;
  bool killed_ = false;
};

}  // namespace ondura
