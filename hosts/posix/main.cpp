#include <exception>
#include <iostream>
#include <string>

#include "host_options.h"
#include "hosts.h"
#include "machine_programs.h"
#include "machines/posix/PosixMachine.h"
#include "machines/posix/StopSignals.h"
#include "machines/posix/private_files.h"

namespace {

int Run(const ondura::HostOptions& options, char** argv) {
  // Caught from the start: a request that comes during the start-up ends the host before its first tick.
  const ondura::StopSignals stop;
  const ondura::PosixMachineResult made = ondura::MakePosixMachine({options.root, options.speed, {}});
  if (!made.owner) {
    std::cerr << "ondura-host: " << made.error << "\n";
    return ondura::kExitUsage;
  }
  const std::string mended = ondura::MendFolderRights(options.root);
  if (!mended.empty()) std::cerr << "ondura-host: " << mended << "\n";
  if (options.role != ondura::HostRole::kElevated) {
    const std::string fault = ondura::InstallMailHelper(made.owner->machine(), options);
    if (!fault.empty()) std::cerr << "ondura-host: no mails will be sent: " << fault << "\n";
  }
  if (options.role == ondura::HostRole::kBackground) {
    const std::string fault = ondura::RunFromInsideMachine(made.owner->machine(), options, argv);
    if (!fault.empty()) {
      std::cerr << "ondura-host: " << fault << "\n";
      return ondura::kExitUsage;
    }
  }
  switch (options.role) {
    case ondura::HostRole::kBackground:
      return ondura::RunBackground(made.owner->machine(), options, stop);
    case ondura::HostRole::kElevated:
      return ondura::RunElevated(made.owner->machine(), options, stop);
    case ondura::HostRole::kService:
      break;
  }
  return ondura::RunService(made.owner->machine(), options, stop);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    ondura::KeepFilesPrivate();
    const ondura::ParsedOptions parsed = ondura::ParseHostOptions(argc, argv);
    return parsed.options ? Run(*parsed.options, argv) : parsed.exit_code;
  } catch (const std::exception& error) {
    std::cerr << "ondura-host: " << error.what() << "\n";
  } catch (...) {
    std::cerr << "ondura-host: stopped by an unknown error.\n";
  }
  return ondura::kExitFailure;
}
