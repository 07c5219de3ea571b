#include "engines/common/scanner.h"

#include <chrono>
#include <iostream>

#include "engine/engine_files.h"
#include "engine/scanner_command.h"
#include "engines/common/HostProcess.h"
#include "engines/common/program.h"
#include "text/text.h"

namespace ondura::engines {

int RunScanner(Client& client, Store& store, const std::string& command_line) {
  using namespace scanner_command;
  const std::string command{Trim(command_line)};
  if (command != kRebuildForJob && command != kSevenDayReset) {
    std::cerr << "scanner: '" << command << "' is not a command; give 29 or 5\n";
    return kExitUnusable;
  }
  const auto write = [&](const ProfileKey& key, const std::string& value) {
    client.transfer().Trf_WriteUserProfileDefault(key, value);
  };
  write(profile_keys::kScannerId, std::to_string(OwnProcessId()));
  write(profile_keys::kScanStatus, "1");
  if (command == kSevenDayReset) {
    const std::string folder = client.installation().UserFile(engine_files::kDatabaseFolder);
    client.machine().files.Remove(folder + "\\" + std::string{engine_files::kDatabase}, Removal::kForce);
  }
  client.machine().clock.Sleep(std::chrono::milliseconds{client.DeploymentNumber("MillisecondsPerScan", 0)});
  if (store.Enter(client.ReadAccount()) == engine_results::kDone) store.Newest();
  write(profile_keys::kScanStatus, "0");
  return kExitDone;
}

}  // namespace ondura::engines
