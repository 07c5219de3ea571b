#pragma once

#include <optional>
#include <string_view>

namespace ondura {

// The words of key Status in section BackupStatus, by which job, engine, hosts and user interface tell each
// other what the backup of a user is doing. After a transfer a result of the engine is there instead.
enum class StatusWord {
  kIdle,
  kStarting,
  kInteractive,  // a backup that a person has started
  kFailed,       // or stopped
  kClosedUp,     // also missed
  kStopAsked,
  kCutOff,  // the cut-off time has come: the engine is to end by itself
};

std::string_view TextOf(StatusWord word);

// The word that is exactly `text`, or std::nullopt.
std::optional<StatusWord> StatusWordOf(std::string_view text);

}  // namespace ondura
