#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "engine/engine_results.h"
#include "engines/common/Client.h"
#include "engines/common/CompareList.h"
#include "engines/common/Selection.h"
#include "engines/common/StageData.h"
#include "engines/common/StopRequests.h"
#include "engines/common/TransferJournal.h"

namespace ondura::engines {

struct StoreSpace {
  std::uint64_t used_bytes = 0;
  std::uint64_t max_bytes = 0;
};

// What one transfer is to save: what the user has chosen, and what the job's stage has prepared. With the
// compare-list method the job names the files too, in a list that grows while the engine runs.
struct TransferRequest {
  Selection& selection;
  StageData& stage_data;
  CompareList* compare_list = nullptr;  // null for the local database method
};

// Where an engine keeps what it saves. One user's account, for the length of one command.
class Store {
 public:
  virtual ~Store() = default;

  // Reaches the store and shows that it accepts the account. kDone, or why not.
  virtual EngineResult Enter(const Account& account) = 0;

  // For a command that comes right after others of the same job: a store that was entered a moment ago need
  // not be asked again. What the command finds wrong is then its own result, of Failure().
  virtual EngineResult Resume(const Account& account) { return Enter(account); }

  // Why Usage() had no answer.
  [[nodiscard]] virtual EngineResult Failure() const { return engine_results::kCannotConnect; }

  // Why the last call failed, in words for a person. Empty if it did not fail, or has nothing to add.
  [[nodiscard]] virtual std::string Reason() const { return {}; }

  // std::nullopt if the store does not answer.
  virtual std::optional<StoreSpace> Usage() = 0;

  // Whether the last transfer found no room. The job takes its outcome from command 16, which has to say so
  // too: the space in use may be below the limit again, or the disk below the store be full.
  [[nodiscard]] virtual bool LacksRoom() = 0;

  // Brings the local database up to what the store has for command 28. By default the database is not
  // touched.
  virtual EngineResult ServerList() { return engine_results::kDone; }

  // Makes the local database anew from what the store has.
  virtual EngineResult Newest() = 0;

  // Saves what has changed and reports each file to the journal. Ends early when `stop` says so.
  virtual EngineResult Transfer(const TransferRequest& request, TransferJournal& journal,
                                StopRequests& stop) = 0;

  // Folders of this store on the machine, each with a backslash at its end. A selection never takes them: a
  // backup of the backup would grow with every run.
  [[nodiscard]] virtual std::vector<std::string> OwnFolders() const { return {}; }
};

}  // namespace ondura::engines
