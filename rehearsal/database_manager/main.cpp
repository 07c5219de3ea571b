// The database manager of the rehearsal machine: keeps the folder of the local database while a job runs.
// Its one argument is that folder, between blanks.

#include <chrono>
#include <iostream>

#include "engines/common/HostProcess.h"
#include "engines/common/program.h"
#include "text/text.h"

namespace {

using namespace ondura;
using namespace ondura::engines;

constexpr std::chrono::milliseconds kPause{1000};

// A job may be between two of its writes at one look.
constexpr int kLooksWithoutJob = 3;

bool JobRuns(Client& client, const std::string& user) {
  return Trim(client.transfer().Trf_ReadUserNameProfile(profile_keys::kStarted)) == "1" &&
         EqualsIgnoringCase(Trim(client.transfer().Trf_ReadUserNameProfile(profile_keys::kScheduled)), user);
}

// Nobody ends the manager after a job that went well, so it ends by itself when the job is over. A host
// that was killed can leave the keys of a running job behind.
void StayForJob(Client& client) {
  const std::string user = client.installation().CurrentUser;
  const auto host = WatchHost();
  for (int looks = 0; looks < kLooksWithoutJob && host->IsThere();) {
    client.machine().clock.Sleep(kPause);
    looks = JobRuns(client, user) ? 0 : looks + 1;
  }
}

}  // namespace

int main(int argc, char** argv) {
  const std::string folder{Trim(ParameterText(argc, argv))};
  return RunProgram("database manager", [&](Client& client) {
    if (folder.empty()) {
      std::cerr << "database manager: give the folder of the local database, such as "
                << "'C:\\ProgramData\\Ondura\\Onduraann\\LDB\\'\n";
      return kExitUnusable;
    }
    client.machine().folders.Make(WithoutLast(WithBackslash(folder)));
    StayForJob(client);
    return kExitDone;
  });
}
