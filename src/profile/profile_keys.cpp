#include "profile/profile_keys.h"

#include <algorithm>
#include <array>

#include "text/text.h"

namespace ondura {

namespace {

using namespace profile_keys;

constexpr std::array kKeys = {
    kUserName,
    kPassword,
    kEncPasswordNew,
    kEncPassword,
    kRandom,
    kServerIp,
    kPort,
    kApiExchange,
    kExchBrick,
    kExchVersion,
    kSqlTemp,
    kSqlServer,
    kSqlUser,
    kSqlPassword,
    kScheduleDisable,
    kShutdown,
    kAutoConnect,
    kIspName,
    kIpAddress,
    kOutPort,
    kResetDay,
    kResetMonth,
    kResetYear,
    kProxySet,
    kProxyName,
    kProxyPort,
    kProxyUser,
    kProxyPassword,
    kProxyAuthOn,
    kProxyHttp,
    kProxySocks,
    kStatus,
    kRetValue,
    kDllStatus,
    kProgStatus,
    kPaused,
    kCancel,
    kLocalBackup,
    kCompareListCount,
    kStatusCheckCount,
    kSkippedCount,
    kSchEndTime,
    kBackupFailureDays,
    kDesktopNotification,
    kStatusWindow,
    kStatusMessage,
    kScannerId,
    kWatcherStatus,
    kScanStatus,
    kDriveList,
    kQuotaMax,
    kQuotaUsed,
    kMultipleIp,
    kLsn,
    kStarted,
    kScheduled,
    kInteractive,
    kIntBackup,
    kStandard,
    kRtBackup,
    kRealTimeBackup,
    kRtbPausedBySch,
    kPluginLaunch,
    kVssTempPath,
    kDefaultUser,
    kInstallFolder,
    kTrayUser,
    kNextTransfer,
    kStartMissed,
    kStandbyBackup,
    kStopSchedule,
    kStopScheduleTime,
    kTray,
    kExcluded,
    kUncCount,
    kLocalDatabase,
};

}  // namespace

std::span<const ProfileKey> AllProfileKeys() { return kKeys; }

const ProfileKey* FindProfileKey(std::string_view name) {
  const auto found =
      std::ranges::find_if(kKeys, [&](const ProfileKey& key) { return EqualsIgnoringCase(key.name, name); });
  return found == kKeys.end() ? nullptr : &*found;
}

}  // namespace ondura
