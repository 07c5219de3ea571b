#include "EngineSettings.h"

#include <filesystem>
#include <utility>

#include "Failure.h"
#include "engines/restic/StoreSettings.h"

namespace ondura {

EngineSettings::EngineSettings(const Machine& machine, const std::string& install_folder, std::string user)
    : profiles_(machine.profiles),
      path_(install_folder + std::string{engines::kEngineSettingsFile}),
      user_(std::move(user)) {}

std::string EngineSettings::SectionFor(std::string_view section) const {
  return user_.empty() ? std::string{section} : engines::engine_settings::OfUser(user_);
}

std::string EngineSettings::Read(std::string_view section, std::string_view key) const {
  return profiles_.ReadString({path_, SectionFor(section), key});
}

void EngineSettings::Write(std::string_view section, std::string_view key, std::string_view value) const {
  if (!profiles_.WriteString({path_, SectionFor(section), key}, value)) {
    throw Failure(Exit::kFailed, "can't write '" + path_ + "' of the machine; look at its rights");
  }
}

std::string StoreLocation(const std::string& location) {
  if (location.find("{account}") != std::string::npos) return location;
  if (engines::IsMachinePath(location))
    return location + (location.ends_with('\\') ? "" : "\\") + "{account}";
  const bool is_remote = !engines::StoreKind(location).empty();
  if (location.empty() || (!is_remote && location.find(':') != std::string::npos)) {
    throw Failure(Exit::kUsage,
                  "'" + location +
                      "' is not a location: give a folder, such as /mnt/backup, or a store, such as "
                      "sftp:host:/backup, rest:https://host:8000/ or s3:https://host/bucket");
  }
  const std::string full =
      is_remote ? location : std::filesystem::absolute(location).lexically_normal().string();
  return full + (full.ends_with('/') || full.ends_with(':') ? "" : "/") + "{account}";
}

}  // namespace ondura
