#pragma once

#include <string>
#include <string_view>

#include "engine/engine_results.h"
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
  void WriteStatus(std::string_view value) { Write("Status", value); }
  void WriteResult(EngineResult result);

  // The job ended by a message.
  void MarkEndedByMessage() { Write("DllStatus", "3"); }

  void AddFailureDay();
  void ClearFailureDays() { Write("BackupFailureDays", "0"); }

  // SchEndTime := now.
  void StampEnd();

  // The engine was killed: nothing runs and nothing is asked for.
  void WriteKilled();

  // True when the user interface asks for an abort.
  bool CheckAborted() { return Read("Status") == "5"; }

 private:
  Transfer& transfer_;
  ProfileStore& store_;
  Clock& clock_;
};

}  // namespace ondura
