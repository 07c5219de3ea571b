#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "OpenedMachine.h"

namespace ondura {

struct JobResult {
  int code = 0;
  std::string words;
};

struct NextRun {
  std::string time;  // "2026-11-14 12:30"
  std::string kind;
  bool is_far = false;  // further ahead than any schedule repeats
};

struct Quota {
  std::string used_bytes;
  std::string max_bytes;  // "1": a gigabyte is left
};

// The state of a user's backups. Texts are empty if there is nothing to say.
struct UserStatus {
  std::string user;
  std::string state;  // "idle", "running", "interactive", "stopping", "interrupted"
  std::string words;  // the same for people
  std::optional<JobResult> last_result;
  std::string last_end;  // "mm-dd-yyyy HH:mm:ss"
  std::string sentence;  // what the job left for the user
  std::string host;      // what the host did to the last job's engine
  int failures_in_a_row = 0;
  bool is_disabled = false;
  std::optional<NextRun> next;
  std::optional<Quota> quota;
  std::vector<std::pair<std::string, std::string>> progress;  // the engine's figures, in its order
};

// Of the machine's current user.
UserStatus ReadUserStatus(const OpenedMachine& opened);

}  // namespace ondura
