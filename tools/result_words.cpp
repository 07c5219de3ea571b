#include "result_words.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "engine/engine_results.h"

namespace ondura {

namespace {

using namespace engine_results;

struct Meaning {
  EngineResult result;
  std::string_view words;
};

constexpr std::array kMeanings = {
    Meaning{kDone, "done"},
    Meaning{kUpToDate, "nothing was sent, all is up to date"},
    Meaning{kNone, "no result yet"},
    Meaning{kPreparingSqlServer, "preparing the SQL Server dump"},
    Meaning{kPreparingSystemState, "preparing the System State"},
    Meaning{kPreparingExchangeStore, "preparing the Exchange store dump"},
    Meaning{kPreparingExchangeBrick, "preparing the Exchange mailbox dump"},
    Meaning{kEndedAbnormally, "the engine ended abnormally"},
    Meaning{kNoPortInformation, "no port information for this account"},
    Meaning{kWrongPassword, "wrong account password"},
    Meaning{kWrongEncryptionPassword, "wrong encryption password"},
    Meaning{kNotConnected, "no connection to the server"},
    Meaning{kNothingSelected, "nothing is selected"},
    Meaning{kNothingNew, "nothing new to back up"},
    Meaning{kCancelled, "cancelled"},
    Meaning{kCannotConnect, "no connection to the server"},
    Meaning{kNothingNewForAccount, "nothing new to back up"},
    Meaning{kCancelledByServer, "cancelled"},
    Meaning{kNothingNewInSelection, "nothing new to back up"},
    Meaning{kAllExcluded, "all that is selected is excluded"},
    Meaning{kRunAgain, "the engine asked for another run"},
    Meaning{kLocked, "the account is locked by an aborted session; try later"},
    Meaning{kDamagedInstallation, "the installation is damaged"},
    Meaning{kQuotaUsedUp, "the storage quota is used up"},
    Meaning{kRunsElsewhere, "another machine is backing up this account"},
    Meaning{kConnectionLost, "no connection to the server"},
    Meaning{kScheduleEnds, "the schedule was ended by the server"},
    Meaning{kScheduleEndsToo, "the schedule was ended by the server"},
    Meaning{kSomeFailed, "some files could not be backed up"},
    Meaning{kProxyFailureAsWell, "the proxy refused the connection"},
    Meaning{kProxyFailureToo, "the proxy refused the connection"},
    Meaning{kProxyFailure, "the proxy refused the connection"},
};

}  // namespace

std::string ResultWords(int result) {
  const auto found =
      std::ranges::find(kMeanings, EngineResult{static_cast<double>(result)}, &Meaning::result);
  return found == kMeanings.end() ? "a result without a known meaning" : std::string{found->words};
}

}  // namespace ondura
