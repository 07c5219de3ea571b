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
  // A file with one more certificate authority for the notification host, in PEM form (RFC 7468), by its
  // path on the machine.
  std::string NotificationAuthority;
};

// A value that is missing or blank becomes a name under a reserved domain, where no server answers:
// "primary.backup.example", "secondary.backup.example" and "notify.backup.example". The authority stays
// empty.
Deployment ReadDeployment(const Machine& machine, const Installation& installation);

}  // namespace ondura
