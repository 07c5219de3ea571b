#include "rehearsal/engine/commands.h"

#include <string>

#include "rehearsal/common/LocalDatabase.h"
#include "rehearsal/common/Vault.h"
#include "rehearsal/common/engine_result.h"
#include "rehearsal/engine/BackupRun.h"
#include "rehearsal/engine/StageData.h"
#include "rehearsal/engine/selection_walk.h"
#include "text/text.h"

namespace ondura::rehearsal {

namespace {

constexpr int kDummyCall = 12;
constexpr int kTotalSize = 16;
constexpr int kRemote = 17;
constexpr int kPortNumber = 24;
constexpr int kServerList = 28;
constexpr int kBuildDatabase = 30;
constexpr int kBackup = 51;

bool IsEngineCommand(int number) {
  return number == kDummyCall || number == kTotalSize || number == kRemote || number == kPortNumber ||
         number == kServerList || number == kBuildDatabase || number == kBackup;
}

EngineResult TotalSize(Client& client, Vault& vault) {
  const std::uint64_t used = vault.UsedBytes();
  const std::uint64_t max = vault.MaxBytes(DefaultQuotaBytes(client));
  client.transfer().Trf_WriteUserProfileDefault("QuotaStatus", "Used", std::to_string(used));
  client.transfer().Trf_WriteUserProfileDefault("QuotaStatus", "Max", std::to_string(max));
  return used > max ? EngineResult::kQuotaUsedUp : EngineResult::kDone;
}

EngineResult PortNumber(Client& client, const Account& account) {
  std::string port = client.transfer().Trf_ReadUserProfile("port");
  if (port.empty()) port = client.installation().DefaultPort;
  if (port.empty()) return EngineResult::kNoPortInformation;
  const std::string text = port + std::string{kLineEnd} + account.server + std::string{kLineEnd};
  const bool written =
      client.text_files().Write(client.installation().UserFile("DLLOutput1.txt"), text, Encoding::kCodePage);
  return written ? EngineResult::kDone : EngineResult::kNoPortInformation;
}

EngineResult Backup(Client& client, Vault& vault) {
  if (Selection(client).IsEmpty() && StageData(client).IsEmpty()) return EngineResult::kNothingSelected;
  return BackupRun(client, vault).Run();
}

EngineResult Perform(Client& client, Vault& vault, const Account& account, int command) {
  switch (command) {
    case kTotalSize:
      return TotalSize(client, vault);
    case kPortNumber:
      return PortNumber(client, account);
    case kBuildDatabase:
      return LocalDatabase(client).Build(vault) ? EngineResult::kDone : EngineResult::kEndedAbnormally;
    case kBackup:
      return Backup(client, vault);
    default:
      return EngineResult::kDone;  // the rest only finds out whether the account may be entered
  }
}

}  // namespace

bool RunEngineCommand(Client& client, const EngineCommand& command) {
  if (!IsEngineCommand(command.number)) return false;
  const Account account = client.ReadAccount();
  Vault vault(client.machine(), client.VaultFolder());
  int result = 0;
  if (const auto rehearsed = vault.RehearsedResult(command.number)) {
    result = *rehearsed;
    client.transfer().Trf_WriteUserProfileDefault("Server", "MultipleIP", vault.RehearsedAddress());
  } else {
    EngineResult answer = vault.Enter(account);
    if (answer == EngineResult::kDone) answer = Perform(client, vault, account, command.number);
    result = static_cast<int>(answer);
  }
  client.WriteStatus("RetValue", std::to_string(result));
  return true;
}

}  // namespace ondura::rehearsal
