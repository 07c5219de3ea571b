#pragma once

#include <string>
#include <vector>

#include "platform/Drives.h"
#include "profile/Transfer.h"

namespace ondura {

// Whether the backup set of a service-mode job depends on drives that only the person's session has.
class MappedDrives {
 public:
  MappedDrives(Drives& drives, const Transfer& transfer) : drives_(drives), transfer_(transfer) {}

  // The drives that the job uses: texts that begin with a drive, each followed by a text of its own. The
  // list that the check goes through; no routine of the component fills it.
  std::vector<std::string>& drive_list() { return drive_list_; }

  // True keeps the compare list from being built: the service is in charge and one of the drives is a
  // network drive or unknown.
  bool CheckServiceModeMappedDrive();

  // Whether the service has been in charge at a check.
  [[nodiscard]] bool check_made() const { return check_made_; }

 private:
  Drives& drives_;
  const Transfer& transfer_;
  std::vector<std::string> drive_list_;
  bool check_made_ = false;
};

}  // namespace ondura
