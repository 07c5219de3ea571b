#pragma once

namespace ondura::engine_results {

// What the engine leaves in RetValue. Positive numbers are successes.
inline constexpr int kDone = 402;
inline constexpr int kUpToDate = 426;
inline constexpr int kEndedAbnormally = -1;
inline constexpr int kNoPortInformation = -40;
inline constexpr int kWrongPassword = -403;
inline constexpr int kWrongEncryptionPassword = -404;
inline constexpr int kNotConnected = -405;
inline constexpr int kNothingSelected = -409;
inline constexpr int kNothingNew = -411;
inline constexpr int kCancelled = -414;
inline constexpr int kCannotConnect = -416;
inline constexpr int kNothingNewForAccount = -418;
inline constexpr int kCancelledByServer = -424;
inline constexpr int kNothingNewInSelection = -425;
inline constexpr int kAllExcluded = -426;
inline constexpr int kRunAgain = -427;
inline constexpr int kLocked = -429;
inline constexpr int kDamagedInstallation = -431;
inline constexpr int kQuotaUsedUp = -432;
inline constexpr int kRunsElsewhere = -434;
inline constexpr int kConnectionLost = -504;
inline constexpr int kScheduleEnds = -507;
inline constexpr int kScheduleEndsToo = -514;
inline constexpr int kSomeFailed = -1001;
inline constexpr int kProxyFirst = -12010;
inline constexpr int kProxyLast = -12008;

constexpr bool IsProxyFailure(double result) {
  return result == kProxyFirst || result == kProxyFirst + 1 || result == kProxyLast;
}

constexpr bool EndsSchedule(double result) { return result == kScheduleEnds || result == kScheduleEndsToo; }

// A connection that may come up again: worth another try.
constexpr bool IsConnectionTrouble(double result) {
  return result == kCannotConnect || result == kNotConnected || IsProxyFailure(result);
}

// The results of commands 24 and 28 that end the job. kNotConnected is not among them on purpose: after its
// tries the job goes on with the address it has.
constexpr bool EndsJobBeforeTransfer(double result) {
  return result == kCannotConnect || result == kWrongEncryptionPassword || IsProxyFailure(result) ||
         result == kDamagedInstallation || result == kWrongPassword || EndsSchedule(result);
}

}  // namespace ondura::engine_results
