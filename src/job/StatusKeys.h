#pragma once

#include <string>
#include <string_view>

#include "engine/engine_results.h"
#include "engine/status_word.h"
#include "platform/Clock.h"
#include "profile/ProfileStore.h"
#include "profile/Transfer.h"

namespace ondura {

// Section BackupStatus of the current user's profile: where the job, the engine and the user interface meet.
class StatusKeys {
 public:
  StatusKeys(Transfer& transfer, ProfileStore& store, Clock& clock)
      : transfer_(transfer), store_(store), clock_(clock) {}

  void Write(std::string_view key, std::string_view value);

  std::string Read(std::string_view key);

  // Status in its two sorts: a word of the job and a result of the engine.
  void WriteStatus(StatusWord word) { Write("Status", TextOf(word)); }
  void WriteResult(EngineResult result) { Write("Status", result.Text()); }

  // The job ended by a message.
  void MarkEndedByMessage() { Write("DllStatus", "3"); }

  void AddFailureDay();
  void ClearFailureDays() { Write("BackupFailureDays", "0"); }

  // SchEndTime := now.
  void StampEnd();

  // The engine was killed: nothing runs and nothing is asked for.
  void WriteKilled();

  // True when the user interface asks for an abort.
  bool CheckAborted() { return StatusWordOf(Read("Status")) == StatusWord::kStopAsked; }

 private:
  Transfer& transfer_;
  ProfileStore& store_;
  Clock& clock_;
};

}  // namespace ondura
