#pragma once

#include <string>
#include <string_view>

#include "engine/engine_results.h"
#include "engine/status_word.h"
#include "platform/Clock.h"
#include "profile/ProfileStore.h"
#include "profile/Transfer.h"

namespace ondura {

// Keys of section BackupStatus of the current user's profile: where the job, the engine and the user
// interface meet.
class StatusKeys {
 public:
  StatusKeys(Transfer& transfer, ProfileStore& store, Clock& clock)
      : transfer_(transfer), store_(store), clock_(clock) {}

  void Write(const ProfileKey& key, std::string_view value);

  std::string Read(const ProfileKey& key);

  // Status in its two sorts: a word of the job and a result of the engine.
  void WriteStatus(StatusWord word) { Write(profile_keys::kStatus, TextOf(word)); }
  void WriteResult(EngineResult result) { Write(profile_keys::kStatus, result.Text()); }

  // The job ended by a message.
  void MarkEndedByMessage() { Write(profile_keys::kDllStatusSecond, run_state::kEndedByMessage); }

  void AddFailureDay();
  void ClearFailureDays() { Write(profile_keys::kBackupFailureDays, "0"); }

  // SchEndTime := now.
  void StampEnd();

  // The engine was killed: nothing runs and nothing is asked for.
  void WriteKilled();

  // True when the user interface asks for an abort.
  bool CheckAborted() { return StatusWordOf(Read(profile_keys::kStatus)) == StatusWord::kStopAsked; }

 private:
  Transfer& transfer_;
  ProfileStore& store_;
  Clock& clock_;
};

}  // namespace ondura
