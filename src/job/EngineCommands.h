#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "engine/engine_command.h"
#include "job/JobServices.h"
#include "job/StatusKeys.h"
#include "job/TempFolder.h"
#include "job/job_state.h"
#include "reporting/LifeSign.h"
#include "util/waits.h"

namespace ondura {

enum class PortWait { kEnded, kGaveUp, kAborted };

// The conversation with the engine: a number and at most one folder text on its command line, and a number
// in the user's profile back.
class EngineCommands {
 public:
  EngineCommands(JobServices& services, JobState& state, StatusKeys& keys, TempFolder& temp_folder)
      : services_(services),
        state_(state),
        keys_(keys),
        temp_folder_(temp_folder),
        life_(services.trace, services.machine.clock, "  Waiting for the engine") {}

  [[nodiscard]] std::string EnginePath() const;

  // Starts the engine and does not wait. An engine that can't be started behaves as one that never ends.
  ProcessWatch Start(std::string_view parameter_text);

  // RetValue; 0 if it is empty. What the last command left stays there until the next one writes. The
  // job remembers what it has read last.
  EngineResult ReadResult() { return state_.run.last_result = {services_.store.ReadLastRetValue()}; }

  // For each pass of a wait, also of one for an engine that could not be started.
  void ShowLife() { life_.Show(); }

  // Command 24: gives up after 300 passes and leaves the engine running then.
  PortWait RunPortNumber(std::string_view parameter_text);

  // Command 28: until the engine ends or an abort is asked for.
  WaitOutcome RunServerList();

  // Command 51: clears RetValue and starts the transfer, whose waits are the caller's. Nothing is started
  // when RetValue keeps its value, on a full disk: the result of the last command would pass for this one's.
  std::optional<ProcessWatch> StartTransfer();

  // Command 16.
  void RunTotalSize();
  void StartTotalSize() {
    Start(EngineParameters(EngineCommand::kTotalSize, temp_folder_.GetTempFolderPath()));
  }

  // Command 17.
  void RunRemote();

 private:
  // Until the engine ends; one that could not be started is given up when an abort is asked for.
  void WaitWithoutLimit(ProcessWatch& engine);

  JobServices& services_;
  JobState& state_;
  StatusKeys& keys_;
  TempFolder& temp_folder_;
  LifeSign life_;
};

}  // namespace ondura
