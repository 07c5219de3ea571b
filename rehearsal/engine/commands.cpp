#include "rehearsal/engine/commands.h"

#include <string>

#include "engine/engine_files.h"
#include "engine/engine_results.h"
#include "rehearsal/common/LocalDatabase.h"
#include "rehearsal/common/Vault.h"
#include "rehearsal/engine/BackupRun.h"
#include "rehearsal/engine/StageData.h"
#include "rehearsal/engine/selection_walk.h"
#include "text/text.h"

namespace ondura::rehearsal {

namespace {

EngineResult TotalSize(Client& client, Vault& vault) {
  const std::uint64_t used = vault.UsedBytes();
  const std::uint64_t max = vault.MaxBytes(DefaultQuotaBytes(client));
  client.transfer().Trf_WriteUserProfileDefault(profile_keys::kQuotaUsed, std::to_string(used));
  client.transfer().Trf_WriteUserProfileDefault(profile_keys::kQuotaMax, std::to_string(max));
  return used > max ? engine_results::kQuotaUsedUp : engine_results::kDone;
}

EngineResult PortNumber(Client& client, const Account& account) {
  std::string port = client.transfer().Trf_ReadUserProfile(profile_keys::kPort);
  if (port.empty()) port = client.installation().DefaultPort;
  if (port.empty()) return engine_results::kNoPortInformation;
  const std::string text = port + std::string{kLineEnd} + account.server + std::string{kLineEnd};
  const bool written = client.text_files().Write(client.installation().UserFile(engine_files::kPortOutput),
                                                 text, Encoding::kCodePage);
  return written ? engine_results::kDone : engine_results::kNoPortInformation;
}

EngineResult Backup(Client& client, Vault& vault) {
  if (Selection(client).IsEmpty() && StageData(client).IsEmpty()) return engine_results::kNothingSelected;
  return BackupRun(client, vault).Run();
}

EngineResult Perform(Client& client, Vault& vault, const Account& account, EngineCommand command) {
  switch (command) {
    case EngineCommand::kTotalSize:
      return TotalSize(client, vault);
    case EngineCommand::kPortNumber:
      return PortNumber(client, account);
    case EngineCommand::kBuildDatabase:
      return LocalDatabase(client).Build(vault) ? engine_results::kDone : engine_results::kEndedAbnormally;
    case EngineCommand::kTransfer:
      return Backup(client, vault);
    default:
      return engine_results::kDone;  // the rest only finds out whether the account may be entered
  }
}

}  // namespace

void RunEngineCommand(Client& client, const EngineCall& call) {
  const Account account = client.ReadAccount();
  Vault vault(client.machine(), client.VaultFolder());
  EngineResult result;
  if (const auto rehearsed = vault.RehearsedResult(call.command)) {
    result = {static_cast<double>(*rehearsed)};
    client.transfer().Trf_WriteUserProfileDefault(profile_keys::kMultipleIp, vault.RehearsedAddress());
  } else {
    result = vault.Enter(account);
    if (result == engine_results::kDone) result = Perform(client, vault, account, call.command);
  }
  client.WriteStatus(profile_keys::kRetValue, result.Text());
}

}  // namespace ondura::rehearsal
