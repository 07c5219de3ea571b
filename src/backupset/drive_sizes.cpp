#include "backupset/drive_sizes.h"

namespace ondura {

std::string RootOf(std::string_view path) { return std::string{path.substr(0, 2)} + "\\"; }

double UsedBytes(const Machine& machine, FolderWalk& walk, std::string_view path) {
  const std::string root = RootOf(path);
  if (machine.drives.KindOf(root) != DriveKind::kFixed) return walk.GetMappedDriveSize(root);
  const auto total_bytes = machine.drives.TotalBytes(root);
  const auto free_bytes = machine.drives.FreeBytes(root);
  if (!total_bytes || !free_bytes) return 0;
  return static_cast<double>(*total_bytes) - static_cast<double>(*free_bytes);
}

}  // namespace ondura
