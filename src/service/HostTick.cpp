#include "service/HostTick.h"

#include "service/tray.h"

#include <chrono>

namespace ondura {

namespace {

// A twin that is absent at both looks, this far apart, is taken over.
constexpr std::chrono::milliseconds kBetweenLooks{61000};

}  // namespace

void HostTick::Cont_CheckStandardRunning() {
  // A host whose timer goes on while a job pumps messages comes in here once more.
  if (pass_.IsRunning()) return;
  const Transfer& transfer = context_.transfer();
  standard_ = transfer.Trf_ReadUserNameProfile(profile_keys::kStandard);
  started_ = transfer.Trf_ReadUserNameProfile(profile_keys::kStarted);
  standby_backup_ = context_.store().ReadSharedRegistryValue(profile_keys::kStandbyBackup);
  context_.trace().Main(" (5.5.17) Calling from first Service exe service.");
  context_.state.CalledFromService = false;
  if (standard_ == "0" && started_ == "0") {
    if (transfer.Trf_ReadUserNameProfile(profile_keys::kStandard) != "1") {
      transfer.Trf_WriteUserNameProfile(profile_keys::kStandard, "0");
      context_.started.LowerOwn();
      RunPass();
    }
  } else if (standard_ == "0" && started_ == "1") {
    context_.installation().CurrentUser = transfer.Trf_ReadUserNameProfile(profile_keys::kScheduled);
    context_.trace().Main(" Calling from Service exe2.");
    RunPass();
  } else if (TwinIsGone()) {
    const bool between_jobs = standard_ == "1" && started_ == "0";
    TakeOver(between_jobs ? " Calling from Service exe3." : " Calling from Service exe4.");
    // The engine of a twin that broke off may go on for hours, and the next job waits for its end.
    const bool left_engine = started_ == "1" && context_.started.EngineRuns();
    if (!between_jobs && !left_engine) context_.started.Lower();
    RunPass();
  }
  context_.state.CalledFromService = false;
}

bool HostTick::TwinIsGone() {
  Programs& programs = context_.services().programs;
  const std::string& twin = context_.installation().BackgroundExe;
  if (programs.IsProcessRunningByModule(twin, Kill::kNo)) return false;
  context_.machine().clock.Sleep(kBetweenLooks);
  return !programs.IsProcessRunningByModule(twin, Kill::kNo);
}

void HostTick::TakeOver(std::string_view trace_text) {
  context_.transfer().Trf_WriteUserNameProfile(profile_keys::kStandard, "0");
  context_.trace().Main(trace_text);
}

void HostTick::RunPass() {
  context_.state.CalledFromService = true;
  OpenMonitorAfterTakeOver();
  pass_.Cont_startschBackup();
}

// The process table is looked at last, as the other tests are nearly free.
void HostTick::OpenMonitorAfterTakeOver() {
  const Transfer& transfer = context_.transfer();
  if (!standby_backup_.empty() && standby_backup_ != "1") return;
  if (transfer.Trf_ReadUserNameProfile(profile_keys::kStandard) == standard_) return;
  if (context_.store().ReadSharedRegistryValue(profile_keys::kTray) == "3") return;
  if (TrayRuns(context_)) return;
  transfer.Trf_WriteUserNameRegistryProfile(profile_keys::kTray, "1");
  context_.trace().Main(" launching monitor " + standard_ + " " + started_);
  OpenTray(context_);
}

}  // namespace ondura
