// The scanner of the rehearsal machine: builds the local database of the user whose job runs. "29" builds it
// for a job, "5" throws the old one away first.

#include <chrono>
#include <iostream>

#include "engine/scanner_command.h"
#include "engines/common/HostProcess.h"
#include "engines/common/program.h"
#include "engines/rehearsal/LocalDatabase.h"
#include "engines/rehearsal/Vault.h"
#include "text/text.h"

namespace {

using namespace ondura;
using namespace ondura::engines;
using namespace ondura::scanner_command;

void WriteScanKey(Client& client, const ProfileKey& key, std::string_view value) {
  client.transfer().Trf_WriteUserProfileDefault(key, value);
}

void Scan(Client& client, bool reset) {
  WriteScanKey(client, profile_keys::kScannerId, std::to_string(OwnProcessId()));
  WriteScanKey(client, profile_keys::kScanStatus, "1");
  LocalDatabase database(client);
  if (reset) database.Remove();
  client.machine().clock.Sleep(std::chrono::milliseconds{client.DeploymentNumber("MillisecondsPerScan", 0)});
  Vault vault(client.machine(), VaultFolder(client.installation()));
  database.Build(vault);
  WriteScanKey(client, profile_keys::kScanStatus, "0");
}

}  // namespace

int main(int argc, char** argv) {
  const std::string text{Trim(ParameterText(argc, argv))};
  return RunProgram("scanner", [&](Client& client) {
    if (text != kRebuildForJob && text != kSevenDayReset) {
      std::cerr << "scanner: '" << text << "' is not a command; give 29 or 5\n";
      return kExitUnusable;
    }
    Scan(client, text == kSevenDayReset);
    return kExitDone;
  });
}
