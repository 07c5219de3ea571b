#include "job/TransferWait.h"

#include <chrono>

#include "text/text.h"
#include "util/date_text.h"

namespace ondura {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kTransferPause{1000};
constexpr int kCancelPassesGranted = 3;
constexpr int kHardStopPassesGranted = 20;
constexpr std::size_t kTimeTextRest = 6;

}  // namespace

std::optional<std::string> HourMinuteText(std::string_view date_and_time) {
  const auto blank = date_and_time.find(' ');
  const std::string_view time =
      blank == std::string_view::npos ? date_and_time : date_and_time.substr(blank + 1);
  const auto colon = time.find(':');
  if (colon == std::string_view::npos || time.size() < kTimeTextRest) return std::nullopt;
  return std::string{time.substr(0, colon)}.append(time.substr(colon + 1, time.size() - kTimeTextRest));
}

TransferWait::End TransferWait::Run(ProcessWatch& engine) {
  while (!engine.EndedWithin(kProcessPass)) {
    job_.machine().pump.Pump();
    job_.machine().clock.Sleep(kTransferPause);
    job_.engine.ShowLife();
    TestCancel();
    TestHardStop();
    // An engine that could not be started never ends; the kill has to stand for its end.
    if (killed_ && !engine.WasStarted()) break;
  }
  return hardStopped_ ? End::kCutOff : End::kByItself;
}

void TransferWait::TestCancel() {
  if (job_.services.transfer.Trf_ReadOutputValue(profile_keys::kCancel) != 1) return;
  job_.machine().pump.Pump();
  job_.machine().clock.Sleep(kTransferPause);
  if (++cancelPasses_ <= kCancelPassesGranted) return;
  abort_.EndPrograms();
  job_.keys.WriteKilled();
  cancelPasses_ = 0;
  killed_ = true;
}

// A job that runs past the ten minutes of the cut-off time is not stopped, and one that starts within them
// is stopped at its next pass.
void TransferWait::TestHardStop() {
  const ProfileStore& store = job_.services.store;
  if (store.ReadSharedRegistryValue(profile_keys::kStopSchedule) != "1") return;
  const auto stop = HourMinuteText(store.ReadSharedRegistryValue(profile_keys::kStopScheduleTime));
  const auto now = HourMinuteText(FormatDate(kStampPicture, job_.machine().clock.Now()));
  if (!stop || !now) return;
  if (*now == *stop) {
    StopHard("strEndTime = strCurrentTime Aborting the scheduled backup job hard stop time reached ");
    if (hardStopPasses_ > kHardStopPassesGranted) EndByHardStop();
    return;
  }
  const auto stop_number = ParseNumber(*stop);
  const auto now_number = ParseNumber(*now);
  if (!stop_number || !now_number || *now_number <= *stop_number) return;
  if (WithoutLast(*now) != WithoutLast(*stop)) return;
  StopHard("Aborting the scheduled backup job hard stop time reached ");
  job_.trace().plain().WriteTrace("Hard stop value :" + job_.keys.Read(profile_keys::kStatus));
  if (hardStopPasses_ > kHardStopPassesGranted) {
    job_.trace().plain().WriteTrace("kill exes as hard stop time reached");
    EndByHardStop();
  }
}

void TransferWait::StopHard(std::string_view trace_text) {
  hardStopped_ = true;
  job_.trace().plain().WriteTrace(trace_text);
  job_.keys.WriteStatus(StatusWord::kCutOff);
  ++hardStopPasses_;
}

void TransferWait::EndByHardStop() {
  abort_.EndProgramsById();
  job_.keys.WriteStatus(StatusWord::kIdle);
  job_.keys.Write(profile_keys::kProgStatus, "0");
  killed_ = true;
}

}  // namespace ondura
