#pragma once

namespace ondura::rehearsal {

// The values of RetValue that the engine answers with.
enum class EngineResult : int {
  kDone = 402,
  kAllUpToDate = 426,
  kEndedAbnormally = -1,
  kNoPortInformation = -40,
  kWrongPassword = -403,
  kWrongEncryptionPassword = -404,
  kNothingSelected = -409,
  kNothingNew = -411,
  kCanceled = -414,
  kCannotConnect = -416,
  kStopped = -424,
  kAllExcluded = -426,
  kQuotaUsedUp = -432,
  kSomeFilesFailed = -1001,
};

}  // namespace ondura::rehearsal
