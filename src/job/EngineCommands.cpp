#include "job/EngineCommands.h"

#include <chrono>

#include "util/date_text.h"

namespace ondura {

namespace {

using std::chrono::milliseconds;

constexpr int kPortPasses = 300;
constexpr milliseconds kPortPause{1000};
constexpr milliseconds kServerListPause{100};
constexpr milliseconds kShortPause{3};

}  // namespace

std::string EngineCommands::EnginePath() const {
  return services_.installation.ExeLocation + services_.installation.ClientExe;
}

ProcessWatch EngineCommands::Start(std::string_view parameter_text) {
  life_.Begin();
  const ProcessHandle handle = services_.programs.LaunchHidden(EnginePath(), parameter_text,
                                                               services_.installation.WorkingFolder(), 0);
  return {services_.machine.processes, handle};
}

PortWait EngineCommands::RunPortNumber(std::string_view parameter_text) {
  ProcessWatch engine = Start(parameter_text);
  for (int pass = 1;; ++pass) {
    services_.machine.pump.Pump();
    services_.machine.clock.Sleep(kPortPause);
    ShowLife();
    if (pass > kPortPasses) {
      services_.trace.plain().WriteTrace("Getting Port info : -416");
      return PortWait::kGaveUp;
    }
    if (keys_.CheckAborted()) return PortWait::kAborted;
    if (engine.EndedWithin(kProcessPass)) return PortWait::kEnded;
  }
}

WaitOutcome EngineCommands::RunServerList() {
  services_.trace.User(" [CALLING] Cmd 28 for server list fetching");
  ProcessWatch engine = Start(EngineParameters(EngineCommand::kServerList, state_.memory.RunFolderText));
  return WaitUntilEndedOrStopped(services_.machine, engine, kServerListPause, [this] {
    ShowLife();
    return keys_.CheckAborted() || services_.progress.ProgressEnded();
  });
}

std::optional<ProcessWatch> EngineCommands::StartTransfer() {
  services_.trace.User(" CALLING with Cmd 51 ");
  std::string& argument = state_.memory.RunFolderText;
  argument += "\\" + FormatDate(kStampFolderPicture, services_.machine.clock.Now());
  keys_.Write(profile_keys::kRetValue, engine_results::kNone.Text());
  if (services_.store.ReadLastRetValue() != 0) return std::nullopt;
  return Start(EngineParameters(EngineCommand::kTransfer, argument));
}

void EngineCommands::RunTotalSize() {
  ProcessWatch engine = Start(EngineParameters(EngineCommand::kTotalSize, temp_folder_.GetTempFolderPath()));
  WaitWithoutLimit(engine);
}

void EngineCommands::RunRemote() {
  ProcessWatch engine = Start(EngineParameters(EngineCommand::kRemote));
  WaitWithoutLimit(engine);
}

void EngineCommands::WaitWithoutLimit(ProcessWatch& engine) {
  WaitUntilEndedOrStopped(services_.machine, engine, kShortPause, [&] {
    ShowLife();
    return !engine.WasStarted() && (keys_.CheckAborted() || services_.progress.ProgressEnded());
  });
}

}  // namespace ondura
