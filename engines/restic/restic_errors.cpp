#include "engines/restic/restic_errors.h"

#include <algorithm>
#include <array>

#include "text/text.h"

namespace ondura::engines {

namespace {

using namespace engine_results;

// Exit codes of restic 0.17 and later.
constexpr std::uint32_t kNoRepository = 10;
constexpr std::uint32_t kAlreadyLocked = 11;
constexpr std::uint32_t kWrongKey = 12;

struct Meaning {
  std::string_view words;  // in small letters, anywhere
  EngineResult result;
  EngineResult in_transfer;  // once files are on their way
};

// The first row that is found counts. A text names the cause before what followed from it, and several causes
// end in the same words, so the sharper ones come first.
constexpr std::array kMeanings{
    Meaning{"wrong password or no key found", kWrongEncryptionPassword, kWrongEncryptionPassword},
    Meaning{"an empty password is not a password", kWrongEncryptionPassword, kWrongEncryptionPassword},
    Meaning{"proxy authentication required", kProxyFailureToo, kProxyFailureToo},
    Meaning{"proxyconnect", kProxyFailureAsWell, kProxyFailureAsWell},
    Meaning{"socks connect", kProxyFailure, kProxyFailure},
    // A proxy that refuses to connect: its word comes bare behind the address, a server's own with a number.
    Meaning{"\": forbidden", kProxyFailure, kProxyFailure},
    Meaning{"\": bad gateway", kProxyFailure, kProxyFailure},
    Meaning{"\": service unavailable", kProxyFailure, kProxyFailure},
    Meaning{"no space left", kQuotaUsedUp, kQuotaUsedUp},
    Meaning{"not enough space", kQuotaUsedUp, kQuotaUsedUp},
    Meaning{"disk full", kQuotaUsedUp, kQuotaUsedUp},
    Meaning{"quota", kQuotaUsedUp, kQuotaUsedUp},
    Meaning{"insufficient storage", kQuotaUsedUp, kQuotaUsedUp},
    Meaning{"(413)", kQuotaUsedUp, kQuotaUsedUp},
    Meaning{"(507)", kQuotaUsedUp, kQuotaUsedUp},
    Meaning{"(401)", kWrongPassword, kWrongPassword},
    Meaning{"(403)", kWrongPassword, kWrongPassword},
    Meaning{"permission denied (publickey", kWrongPassword, kWrongPassword},
    Meaning{"permission denied (password", kWrongPassword, kWrongPassword},
    Meaning{"permission denied (keyboard", kWrongPassword, kWrongPassword},
    Meaning{"access denied.", kWrongPassword, kWrongPassword},
    Meaning{"invalidaccesskeyid", kWrongPassword, kWrongPassword},
    Meaning{"signaturedoesnotmatch", kWrongPassword, kWrongPassword},
    Meaning{"unknown flag", kDamagedInstallation, kDamagedInstallation},
    Meaning{"unknown command", kDamagedInstallation, kDamagedInstallation},
    Meaning{"host key verification failed", kCannotConnect, kCannotConnect},
    Meaning{"x509:", kCannotConnect, kCannotConnect},
    Meaning{"tls:", kCannotConnect, kCannotConnect},
    Meaning{"no such host", kCannotConnect, kConnectionLost},
    Meaning{"connection refused", kCannotConnect, kConnectionLost},
    Meaning{"connection reset", kCannotConnect, kConnectionLost},
    Meaning{"connection timed out", kCannotConnect, kConnectionLost},
    Meaning{"no route to host", kCannotConnect, kConnectionLost},
    Meaning{"network is unreachable", kCannotConnect, kConnectionLost},
    Meaning{"actively refused", kCannotConnect, kConnectionLost},
    Meaning{"i/o timeout", kCannotConnect, kConnectionLost},
    Meaning{"broken pipe", kCannotConnect, kConnectionLost},
    Meaning{"connection lost", kCannotConnect, kConnectionLost},
    Meaning{"ssh command exited", kCannotConnect, kConnectionLost},
    Meaning{"unable to start the sftp session", kCannotConnect, kConnectionLost},
    Meaning{"is there a repository", kCannotConnect, kConnectionLost},
    Meaning{"unable to open config file", kCannotConnect, kConnectionLost},
    Meaning{"unexpected eof", kCannotConnect, kConnectionLost},
    Meaning{"unexpected http response", kCannotConnect, kConnectionLost},
    Meaning{"input/output error", kCannotConnect, kConnectionLost},
    Meaning{"transport endpoint is not connected", kCannotConnect, kConnectionLost},
    Meaning{"permission denied", kCannotConnect, kCannotConnect},
    Meaning{"access is denied", kCannotConnect, kCannotConnect},
};

bool SaysLocked(std::string_view words) {
  return words.find("already locked") != std::string_view::npos ||
         words.find("unable to create lock in backend") != std::string_view::npos;
}

}  // namespace

EngineResult ResultOfWords(std::string_view words, std::uint32_t exit_code, ResticPhase phase,
                           std::string_view own_host) {
  const std::string lower = ToLower(words);
  if (exit_code == kWrongKey) return kWrongEncryptionPassword;
  if (exit_code == kNoRepository) return kCannotConnect;
  const std::string holder = LockHolder(words);
  if (!holder.empty() || exit_code == kAlreadyLocked) {
    return holder.empty() || EqualsIgnoringCase(holder, own_host) ? kLocked : kRunsElsewhere;
  }
  const auto found = std::ranges::find_if(
      kMeanings, [&](const Meaning& meaning) { return lower.find(meaning.words) != std::string::npos; });
  if (found == kMeanings.end()) return kEndedAbnormally;
  return phase == ResticPhase::kTransferring ? found->in_transfer : found->result;
}

std::string LockHolder(std::string_view words) {
  constexpr std::string_view kOn = " on ";
  constexpr std::string_view kBy = " by ";
  if (!SaysLocked(words)) return {};
  const auto begin = words.find(kOn, words.find("by PID"));
  if (begin == std::string_view::npos) return {};
  const std::string_view rest = words.substr(begin + kOn.size());
  return std::string{rest.substr(0, rest.find(kBy))};
}

bool SaysNoRepository(std::string_view words, std::uint32_t exit_code) {
  const std::string lower = ToLower(words);
  if (exit_code == kNoRepository) return true;
  if (lower.find("is there a repository") == std::string::npos) return false;
  for (const std::string_view gone :
       {"no such file", "does not exist", "not found", "cannot find", "(404)"}) {
    if (lower.find(gone) != std::string::npos) return true;
  }
  return false;
}

}  // namespace ondura::engines
