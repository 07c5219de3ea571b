#include "profile/Deployment.h"

#include <string_view>

#include "profile/profile_paths.h"
#include "text/text.h"

namespace ondura {

Deployment ReadDeployment(const Machine& machine, const Installation& installation) {
  const std::string file = installation.ExeLocation + std::string{kDeploymentFile};
  const auto read = [&](std::string_view key, std::string_view fallback) {
    const std::string value = machine.profiles.ReadString({file, "Deployment", key});
    const auto trimmed = Trim(value);
    return std::string{trimmed.empty() ? fallback : trimmed};
  };
  return {.PrimaryServer = read("PrimaryServer", "primary.backup.example"),
          .SecondaryServer = read("SecondaryServer", "secondary.backup.example"),
          .NotificationHost = read("NotificationHost", "notify.backup.example"),
          .NotificationAuthority = read("NotificationAuthority", "")};
}

}  // namespace ondura
