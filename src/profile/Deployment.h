#pragma once

#include <string>

#include "platform/machine.h"
#include "profile/Installation.h"

namespace ondura {

// Where the backup service of this installation is: the values that whoever runs the service chooses.
//
// They stand in Deployment.ini in the install folder, section "Deployment", one key for each member and
// named like it, in plain text.
struct Deployment {
  std::string PrimaryServer;
  std::string SecondaryServer;
  std::string NotificationHost;
};

// A value that is missing or blank becomes a name under a reserved domain, where no server answers:
// "primary.backup.example", "secondary.backup.example" and "notify.backup.example".
Deployment ReadDeployment(const Machine& machine, const Installation& installation);

}  // namespace ondura
