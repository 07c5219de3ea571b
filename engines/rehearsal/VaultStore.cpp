#include "engines/rehearsal/VaultStore.h"

#include "engine/engine_results.h"
#include "engines/common/commands.h"
#include "engines/rehearsal/BackupRun.h"
#include "engines/rehearsal/LocalDatabase.h"

namespace ondura::engines {

VaultStore::VaultStore(Client& client)
    : client_(client), vault_(client.machine(), VaultFolder(client.installation())) {}

std::optional<StoreSpace> VaultStore::Usage() {
  return StoreSpace{vault_.UsedBytes(), vault_.MaxBytes(DefaultQuotaBytes(client_))};
}

EngineResult VaultStore::Newest() {
  return LocalDatabase(client_).Build(vault_) ? engine_results::kDone : engine_results::kEndedAbnormally;
}

EngineResult VaultStore::Transfer(const TransferRequest& request, TransferJournal& journal,
                                  StopRequests& stop) {
  const EngineResult result = BackupRun(client_, vault_, request, journal, stop).Run();
  vault_.SetFull(result == engine_results::kQuotaUsedUp);
  return result;
}

std::vector<std::string> VaultStore::OwnFolders() const {
  return {client_.installation().DataFile("Vault\\")};
}

void RunRehearsalCommand(Client& client, const EngineCall& call) {
  VaultStore store(client);
  const auto rehearsed = store.vault().RehearsedResult(call.command);
  if (!rehearsed) {
    RunEngineCommand(client, store, call);
    return;
  }
  client.transfer().Trf_WriteUserProfileDefault(profile_keys::kMultipleIp, store.vault().RehearsedAddress());
  client.WriteStatus(profile_keys::kRetValue, EngineResult{static_cast<double>(*rehearsed)}.Text());
}

}  // namespace ondura::engines
