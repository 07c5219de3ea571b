#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ondura {

// The kinds as the scripting file-system object numbers them.
enum class DriveKind { kUnknown = 0, kRemovable = 1, kFixed = 2, kNetwork = 3, kCdRom = 4, kRamDisk = 5 };

// Drives, and the names of places on them.
//
// On Windows: GetLogicalDriveStringsA, GetDriveTypeW, GetDiskFreeSpaceExW, GetShortPathNameW,
// GetLongPathNameW, GetSystemDirectoryW, SHGetSpecialFolderLocation with SHGetPathFromIDListW.
class Drives {
 public:
  virtual ~Drives() = default;

  // Root texts such as "C:\", in letter order. Empty if the system can't say.
  virtual std::vector<std::string> Roots() = 0;

  // kUnknown for a root that does not exist.
  virtual DriveKind KindOf(std::string_view root) = 0;

  // Bytes free for the caller on the drive that holds `path`. std::nullopt if the path does not exist or the
  // drive is not ready.
  virtual std::optional<std::uint64_t> FreeBytes(std::string_view path) = 0;

  // How many bytes that drive holds, free or not. std::nullopt for a drive that is not ready.
  virtual std::optional<std::uint64_t> TotalBytes(std::string_view path) = 0;

  // The 8.3 form, or the path itself on a volume without short names. Empty if the path does not exist.
  virtual std::string ShortPath(std::string_view path) = 0;

  // The full path, each name in the letter case that it has on the disk. Empty if the path does not exist.
  virtual std::string LongPath(std::string_view path) = 0;

  // "C:\Windows\system32", or what the machine has in its place. Empty on failure.
  virtual std::string SystemFolder() = 0;

  // Where programs keep the data of this account that stays on this machine (folder 28 of the shell). Empty
  // on failure.
  virtual std::string LocalDataFolder() = 0;
};

}  // namespace ondura
