#pragma once

#include <string>

#include "text/text.h"

namespace ondura {

// What the engine leaves in RetValue. Another program writes it, so that it can be any number.
struct EngineResult {
  double number = 0;

  // As it is in the profile and in traces.
  [[nodiscard]] std::string Text() const { return NumberText(number); }

  friend bool operator==(const EngineResult&, const EngineResult&) = default;
};

}  // namespace ondura

namespace ondura::engine_results {

// No result yet: each transfer begins with it.
inline constexpr EngineResult kNone{0};

// Positive numbers are successes.
inline constexpr EngineResult kDone{402};
inline constexpr EngineResult kUpToDate{426};
inline constexpr EngineResult kEndedAbnormally{-1};
inline constexpr EngineResult kNoPortInformation{-40};
inline constexpr EngineResult kWrongPassword{-403};
inline constexpr EngineResult kWrongEncryptionPassword{-404};
inline constexpr EngineResult kNotConnected{-405};
inline constexpr EngineResult kNothingSelected{-409};
inline constexpr EngineResult kNothingNew{-411};
inline constexpr EngineResult kCancelled{-414};
inline constexpr EngineResult kCannotConnect{-416};
inline constexpr EngineResult kNothingNewForAccount{-418};
inline constexpr EngineResult kCancelledByServer{-424};
inline constexpr EngineResult kNothingNewInSelection{-425};
inline constexpr EngineResult kAllExcluded{-426};
inline constexpr EngineResult kRunAgain{-427};
inline constexpr EngineResult kLocked{-429};
inline constexpr EngineResult kDamagedInstallation{-431};
inline constexpr EngineResult kQuotaUsedUp{-432};
inline constexpr EngineResult kRunsElsewhere{-434};
inline constexpr EngineResult kConnectionLost{-504};
inline constexpr EngineResult kScheduleEnds{-507};
inline constexpr EngineResult kScheduleEndsToo{-514};
inline constexpr EngineResult kSomeFailed{-1001};
inline constexpr EngineResult kProxyFailure{-12010};
inline constexpr EngineResult kProxyFailureToo{-12009};
inline constexpr EngineResult kProxyFailureAsWell{-12008};

// What a stage writes there while it prepares its data.
inline constexpr EngineResult kPreparingSqlServer{100};
inline constexpr EngineResult kPreparingSystemState{200};
inline constexpr EngineResult kPreparingExchangeStore{300};
inline constexpr EngineResult kPreparingExchangeBrick{400};

constexpr bool IsProxyFailure(EngineResult result) {
  return result == kProxyFailure || result == kProxyFailureToo || result == kProxyFailureAsWell;
}

constexpr bool EndsSchedule(EngineResult result) {
  return result == kScheduleEnds || result == kScheduleEndsToo;
}

// A connection that may come up again: worth another try.
constexpr bool IsConnectionTrouble(EngineResult result) {
  return result == kCannotConnect || result == kNotConnected || IsProxyFailure(result);
}

// The results of commands 24 and 28 that end the job. kNotConnected is not among them on purpose: after its
// tries the job goes on with the address it has.
constexpr bool EndsJobBeforeTransfer(EngineResult result) {
  return result == kCannotConnect || result == kWrongEncryptionPassword || IsProxyFailure(result) ||
         result == kDamagedInstallation || result == kWrongPassword || EndsSchedule(result);
}

}  // namespace ondura::engine_results
