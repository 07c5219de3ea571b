#include "machine_setup.h"

#include <cctype>
#include <iostream>
#include <random>
#include <utility>

#include "EngineSettings.h"
#include "Failure.h"
#include "OpenedMachine.h"
#include "engines/restic/StoreSettings.h"
#include "host_files.h"
#include "profile/ProductConfiguration.h"
#include "profile/profile_paths.h"
#include "text/text.h"
#include "util/TextFiles.h"

namespace ondura {

namespace {

constexpr std::string_view kDatabaseManagerExe = "OnduraSDBManager.exe";
constexpr std::string_view kAuthorityFile = "NotificationAuthority.pem";

// Makes a folder with those above it.
void MakeFolders(const Machine& machine, const std::string& folder) {
  for (auto end = folder.find('\\', 3); end != std::string::npos; end = folder.find('\\', end + 1)) {
    const std::string part = folder.substr(0, end);
    if (!machine.folders.Exists(part) && !machine.folders.Make(part)) {
      throw Failure(Exit::kFailed, "can't make the folder '" + part + "' of the machine; look at its rights");
    }
  }
}

void WriteValue(const Machine& machine, const IniKey& key, std::string_view value) {
  if (!machine.profiles.WriteString(key, value)) {
    throw Failure(Exit::kFailed,
                  "can't write '" + std::string{key.file} + "' of the machine; look at its rights");
  }
}

std::string RandomDigits() {
  std::random_device random;
  std::string digits;
  for (int i = 0; i < 10; ++i) digits += static_cast<char>('0' + random() % 10);
  return digits;
}

void WriteConfiguration(const Machine& machine, Installation& installation, const MachinePlan& plan) {
  const ProductConfiguration configuration(machine, installation);
  const std::string file = installation.DataFile(kConfigurationFile);
  const auto write = [&](std::string_view section, std::string_view key, std::string_view value) {
    const std::string stored_key = configuration.StoredForm(key);
    WriteValue(machine, {file, section, stored_key}, configuration.StoredForm(value));
  };
  write("ProductInfo", "ProductNumber", std::to_string(plan.product_number));
  write("ProductInfo", "ProductName", plan.name);
  write("ProductInfo", "ProductInstallationName", plan.installation_name);
  write("ProductInfo", "ExeGroup", plan.exe_group);
  write("ProductInfo", "ProductCaption", plan.caption);
  write("ProductInfo", "Language", plan.language);
  write("ConnectionInfo", "DomainName", plan.domain);
}

void WriteDeployment(const Machine& machine, const Installation& installation, const MachinePlan& plan) {
  const std::string file = installation.ExeLocation + std::string{kDeploymentFile};
  WriteValue(machine, {file, "Deployment", "PrimaryServer"}, plan.primary_server);
  WriteValue(machine, {file, "Deployment", "SecondaryServer"}, plan.secondary_server);
  WriteValue(machine, {file, "Deployment", "NotificationHost"}, plan.notification_host);
  const std::string authority =
      plan.notification_authority.empty() ? "" : installation.ExeLocation + std::string{kAuthorityFile};
  WriteValue(machine, {file, "Deployment", "NotificationAuthority"}, authority);
}

// The service starts in charge and idle, so that its first tick does not wait for a twin.
void WriteSharedState(const Machine& machine, const Installation& installation, const MachinePlan& plan) {
  const std::string file = SharedStatePath(installation);
  WriteValue(machine, {file, profile_keys::kInstallFolder.section, profile_keys::kInstallFolder},
             installation.ExeLocation);
  const std::string random_key = plan.installation_name + " client system random number";
  if (machine.profiles.ReadString({file, profile_keys::kRegistrySection, random_key}).empty()) {
    WriteValue(machine, {file, profile_keys::kRegistrySection, random_key}, RandomDigits());
  }
  WriteValue(machine, {file, profile_keys::kStandard.section, profile_keys::kStandard}, "0");
  WriteValue(machine, {file, profile_keys::kStarted.section, profile_keys::kStarted}, "0");
  const std::string user_list = installation.DataFile(kUserListFile);
  const bool is_there =
      machine.files.Exists(user_list) ||
      TextFiles(machine.files, machine.code_page).CreateMissing(user_list, Encoding::kCodePage);
  if (!is_there) {
    throw Failure(Exit::kFailed,
                  "can't write the user list of the machine; look at the rights of its data folder");
  }
}

void CopyFiles(const Globals& globals, const Installation& installation, const MachinePlan& plan) {
  const auto copy = [&](const std::string& from, const std::string& name) {
    if (!from.empty()) InstallProgram(from, globals.root, installation.ExeLocation + name);
  };
  const bool takes_own = plan.engine.empty() && !plan.force;
  const auto own = [&](const std::string& file, const char* name) {
    return file.empty() && takes_own ? FindOwnProgram(name) : file;
  };
  copy(own(plan.engine, "restic-engine"), installation.ClientExe);
  copy(own(plan.scanner, "restic-scanner"), installation.ExeGroup + "Scan.exe");
  copy(own(plan.database_manager, "rehearsal-database-manager"), std::string{kDatabaseManagerExe});
  copy(plan.notification_authority, std::string{kAuthorityFile});
}

// A folder of the machine, with one kind of slash and a backslash at its end.
std::string MachineFolder(const std::string& path, const char* option) {
  std::string folder = WithBackslash(ReplaceAll(path, "/", "\\"));
  const bool has_drive = folder.size() >= 3 && std::isalpha(static_cast<unsigned char>(folder[0])) != 0 &&
                         folder.substr(1, 2) == ":\\";
  if (!has_drive) {
    throw Failure(Exit::kUsage,
                  std::string{option} + ": '" + path +
                      "' is not a folder of the machine; give it with its drive, such as C:\\Data\\");
  }
  return folder;
}

}  // namespace

void SetUpMachine(const Globals& globals, const MachinePlan& plan) {
  Installation installation;
  installation.ExeLocation = MachineFolder(globals.install, "--install");
  installation.VirtualPath = MachineFolder(plan.data_folder, "--data");
  if (Trim(plan.name).empty() || Trim(plan.installation_name).empty()) {
    throw Failure(Exit::kUsage, "--name and --installation-name must not be empty");
  }
  PrepareRoot(globals.root, plan.drives, plan.force);

  const auto owner = OpenMachineFolder(globals);
  const Machine& machine = owner->machine();
  MakeFolders(machine, installation.ExeLocation);
  MakeFolders(machine, installation.VirtualPath);
  WriteValue(machine,
             {InstallPointerPath(installation), profile_keys::kDataFolder.section, profile_keys::kDataFolder},
             installation.VirtualPath);
  WriteConfiguration(machine, installation, plan);
  WriteDeployment(machine, installation, plan);
  WriteSharedState(machine, installation, plan);
  if (!ProductConfiguration(machine, installation).LoadProductConfiguration()) {
    throw Failure(Exit::kFailed,
                  "the configuration does not read back; choose names within the machine's code page");
  }
  CopyFiles(globals, installation, plan);
  if (!plan.store.empty()) {
    EngineSettings(machine, installation.ExeLocation, {})
        .Write(engines::engine_settings::kStore, engines::engine_settings::kRepository,
               StoreLocation(plan.store));
  }
  std::cout << "The machine is in " << globals.root << ". Next: ondura --root '" << globals.root
            << "' user add NAME\n";
}

}  // namespace ondura
