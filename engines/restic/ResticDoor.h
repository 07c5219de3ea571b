#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

#include "engines/common/door.h"
#include "engines/restic/ResticStore.h"
#include "engines/restic/Restore.h"

namespace ondura::engines {

// Answers what a person asks of a user's repository.
class ResticDoor {
 public:
  ResticDoor(Client& client, std::ostream& answers) : client_(client), store_(client), answers_(answers) {}

  // The exit code.
  int Run(const DoorCall& call);

 private:
  int Offers();
  int ShowStore();
  int ShowSnapshots();
  int ShowFiles(const DoorCall& call);
  int RestoreFiles(const DoorCall& call);
  int Verify(const DoorCall& call);
  int Accept();
  int ChangePassword();

  // False after an answer with the reason.
  bool Enter();
  const ResticSnapshot* Pick(const DoorCall& call);
  int Fail(std::string_view message);

  Client& client_;
  ResticStore store_;
  std::ostream& answers_;
  std::vector<ResticSnapshot> snapshots_;
};

}  // namespace ondura::engines
