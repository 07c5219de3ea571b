#include "backupset/MappedDrives.h"

#include <cstddef>

#include "backupset/drive_sizes.h"

namespace ondura {

bool MappedDrives::CheckServiceModeMappedDrive() {
  if (transfer_.Trf_ReadUserNameProfile(profile_keys::kStandard) != "0") return false;
  check_made_ = true;
  for (std::size_t entry = 0; entry < drive_list_.size(); entry += 2) {
    const DriveKind kind = drives_.KindOf(RootOf(drive_list_[entry]));
    if (kind == DriveKind::kNetwork || kind == DriveKind::kUnknown) return true;
  }
  return false;
}

}  // namespace ondura
