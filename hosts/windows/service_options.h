#pragma once

#include <optional>
#include <string>

#include "command_line.h"

namespace ondura {

// What OnduraService.exe is to do.
enum class ServiceAction {
  kRunAsService,
  kConsole,
  kInstall,
  kStart,
  kStop,
  kRemove,
  kRegister,
  kUnregister,
  kRecover,
  kAllow,
};

struct ServiceOptions : WindowsHostOptions {
  ServiceAction action = ServiceAction::kRunAsService;
  int wait_seconds = 60;  // for a service that starts or stops
  std::string data;       // for kRegister; empty leaves the data folder as it is
  bool keep = false;      // for kRegister: a data folder that is noted already stays
  bool remember = false;  // for kRegister: an installer finds the folders again
  std::string account;    // for kAllow: who may work with the folder of `user`
  std::string user;
};

// The options, or the code to leave with at once.
struct ParsedServiceOptions {
  std::optional<ServiceOptions> options;
  int exit_code = 0;
};

ParsedServiceOptions ParseServiceOptions();

// The command line by which the service manager starts this program.
std::string ServiceCommandLine(const ServiceOptions& options);

// The command line by which the service starts the elevated host beside this program.
std::string ElevatedCommandLine(const ServiceOptions& options);

}  // namespace ondura
