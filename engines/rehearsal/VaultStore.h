#pragma once

#include <optional>
#include <string>
#include <vector>

#include "engine/engine_command.h"
#include "engines/common/Store.h"
#include "engines/rehearsal/Vault.h"

namespace ondura::engines {

// The store of the rehearsal engine: copies in a folder of the machine.
class VaultStore : public Store {
 public:
  explicit VaultStore(Client& client);

  EngineResult Enter(const Account& account) override { return vault_.Enter(account); }
  std::optional<StoreSpace> Usage() override;
  [[nodiscard]] bool LacksRoom() override { return vault_.IsFull(); }
  EngineResult Newest() override;
  EngineResult Transfer(const TransferRequest& request, TransferJournal& journal,
                        StopRequests& stop) override;
  [[nodiscard]] std::vector<std::string> OwnFolders() const override;

  Vault& vault() { return vault_; }

 private:
  Client& client_;
  Vault vault_;
};

// As RunEngineCommand; a result that is laid down for the command in the vault's account file is given at
// once.
void RunRehearsalCommand(Client& client, const EngineCall& call);

}  // namespace ondura::engines
