#include <sys/statvfs.h>

#include "machines/posix/ports.h"

namespace ondura {

namespace {

class PosixDrives : public Drives {
 public:
  PosixDrives(PathMap& paths, const MachineSettings& settings) : paths_(paths), settings_(settings) {}

  std::vector<std::string> Roots() override {
    std::vector<std::string> roots;
    for (char letter = 'A'; letter <= 'Z'; ++letter) {
      const auto status = StatHost(paths_.DriveFolder(letter));
      if (status && S_ISDIR(status->st_mode)) roots.push_back(std::string{letter} + ":\\");
    }
    return roots;
  }

  DriveKind KindOf(std::string_view root) override {
    const auto status = paths_.StatExisting(root);
    const bool is_drive = paths_.IsDriveRoot(root) && status && S_ISDIR(status->st_mode);
    return is_drive ? DriveKind::kFixed : DriveKind::kUnknown;
  }

  std::optional<std::uint64_t> FreeBytes(std::string_view path) override {
    const auto system = FileSystemOf(path);
    if (!system) return std::nullopt;
    return static_cast<std::uint64_t>(system->f_bavail) * system->f_frsize;
  }

  std::optional<std::uint64_t> TotalBytes(std::string_view path) override {
    const auto system = FileSystemOf(path);
    if (!system) return std::nullopt;
    return static_cast<std::uint64_t>(system->f_blocks) * system->f_frsize;
  }

  // The host has no short names.
  std::string ShortPath(std::string_view path) override {
    return paths_.FindExisting(path) ? std::string{path} : std::string{};
  }

  std::string LongPath(std::string_view path) override {
    const auto host = paths_.FindExisting(path);
    return host ? paths_.OnDriveOf(path, *host) : std::string{};
  }

  std::string SystemFolder() override { return settings_.system_folder; }
  std::string LocalDataFolder() override { return settings_.local_data_folder; }

 private:
  std::optional<struct statvfs> FileSystemOf(std::string_view path) {
    const auto host = paths_.FindExisting(path);
    struct statvfs system {};
    if (!host || statvfs(host->c_str(), &system) != 0) return std::nullopt;
    return system;
  }

  PathMap& paths_;
  const MachineSettings& settings_;
};

}  // namespace

std::unique_ptr<Drives> MakePosixDrives(PathMap& paths, const MachineSettings& settings) {
  return std::make_unique<PosixDrives>(paths, settings);
}

}  // namespace ondura
