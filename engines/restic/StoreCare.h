#pragma once

#include <string>
#include <vector>

#include "engines/common/StopRequests.h"
#include "engines/common/TransferJournal.h"
#include "engines/restic/ResticStore.h"

namespace ondura::engines {

// What keeps a repository healthy over the years: old snapshots go, unused data goes, and all of it is read
// once in so many weeks, since a changed byte shows only when it is read. These need the store for themselves
// and fail at once beside another job, so they come after a backup. A failure is told in the log and leaves
// the backup's result.
class StoreCare {
 public:
  StoreCare(Client& client, ResticStore& store, TransferJournal& journal, StopRequests& stop)
      : client_(client), store_(store), journal_(journal), stop_(stop) {}

  // Before a backup, when the last run did not come to its end: its lock, and the index of what it had sent,
  // without which all of it would be sent once more.
  void MendAfterBreak();

  void AfterGoodRun();

 private:
  [[nodiscard]] bool IsCheckDue() const;
  void Forget();
  void Check();
  bool Do(std::vector<std::string> arguments, const std::string& what);

  Client& client_;
  ResticStore& store_;
  TransferJournal& journal_;
  StopRequests& stop_;
};

}  // namespace ondura::engines
