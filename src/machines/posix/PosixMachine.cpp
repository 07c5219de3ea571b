#include "machines/posix/PosixMachine.h"

#include <array>
#include <climits>
#include <cstdlib>
#include <utility>

#include "machines/libcrypto/LibcryptoCrypto.h"
#include "machines/posix/ports.h"

namespace ondura {

namespace {

class MachineInFolder : public PosixMachine {
 public:
  MachineInFolder(PosixOptions options, MachineSettings settings)
      : settings_(std::move(settings)),
        paths_(options.root, settings_.drives),
        store_(settings_.code_page),
        clock_(MakePosixClock(zone_, options.speed)),
        pump_(MakePosixMessagePump(std::move(options.pump))),
        files_(MakePosixFiles(paths_, zone_)),
        folders_(MakePosixFolders(paths_, zone_)),
        watches_(MakePosixFileWatches(paths_)),
        drives_(MakePosixDrives(paths_, settings_)),
        profiles_(MakePosixProfileFiles(paths_, store_, settings_.code_page)),
        registry_(MakePosixRegistry(options.root, store_, settings_.code_page)),
        processes_(MakePosixProcesses(paths_, *clock_, settings_, options.speed)),
        system_(MakePosixSystemInfo(settings_)),
        locale_(MakePosixLocaleInfo(settings_)),
        internet_(MakePosixInternet(settings_)),
        web_(MakePosixWebRequests(settings_)),
        services_(MakePosixServices(settings_)),
        desktop_(MakePosixDesktop()),
        power_(MakePosixPower(settings_)),
        names_(MakePosixNameResolution()),
        mutexes_(MakePosixNamedMutexes(options.root, *clock_, options.speed)),
        continuous_backup_(MakePosixContinuousBackup()) {}

  const Machine& machine() override { return machine_; }

 private:
  MachineSettings settings_;
  PathMap paths_;
  IniStore store_;
  LocalZone zone_;
  LibcryptoCrypto crypto_;
  std::unique_ptr<Clock> clock_;
  std::unique_ptr<MessagePump> pump_;
  std::unique_ptr<Files> files_;
  std::unique_ptr<Folders> folders_;
  std::unique_ptr<FileWatches> watches_;
  std::unique_ptr<Drives> drives_;
  std::unique_ptr<ProfileFiles> profiles_;
  std::unique_ptr<Registry> registry_;
  std::unique_ptr<Processes> processes_;
  std::unique_ptr<SystemInfo> system_;
  std::unique_ptr<LocaleInfo> locale_;
  std::unique_ptr<Internet> internet_;
  std::unique_ptr<WebRequests> web_;
  std::unique_ptr<Services> services_;
  std::unique_ptr<Desktop> desktop_;
  std::unique_ptr<Power> power_;
  std::unique_ptr<NameResolution> names_;
  std::unique_ptr<NamedMutexes> mutexes_;
  std::unique_ptr<ContinuousBackup> continuous_backup_;

  Machine machine_{
      .clock = *clock_,
      .pump = *pump_,
      .files = *files_,
      .folders = *folders_,
      .watches = *watches_,
      .drives = *drives_,
      .profiles = *profiles_,
      .registry = *registry_,
      .processes = *processes_,
      .system = *system_,
      .locale = *locale_,
      .code_page = settings_.code_page,
      .internet = *internet_,
      .crypto = crypto_,
      .services = *services_,
      .desktop = *desktop_,
      .power = *power_,
      .names = *names_,
      .mutexes = *mutexes_,
      .continuous_backup = *continuous_backup_,
      .web = *web_,
  };
};

// The root without links and dots, as the host shows it for running programs. Empty if it does not exist.
std::string CanonicalRoot(const std::string& root) {
  std::array<char, PATH_MAX> canonical{};
  if (root.empty() || realpath(root.c_str(), canonical.data()) == nullptr) return {};
  const auto status = StatHost(canonical.data());
  return status && S_ISDIR(status->st_mode) ? std::string{canonical.data()} : std::string{};
}

}  // namespace

PosixMachineResult MakePosixMachine(PosixOptions options) {
  const std::string given = options.root;
  options.root = CanonicalRoot(given);
  if (options.root.empty()) {
    return {nullptr, "\"" + given + "\" is no folder. Make the machine's folder first."};
  }
  if (options.root == "/") return {nullptr, "The root of the host can't be a machine's folder."};
  if (options.speed < 1) return {nullptr, "The speed is a whole number of 1 or more."};
  MachineSettings settings;
  std::string error = LoadMachineSettings(options.root, settings);
  if (!error.empty()) return {nullptr, std::move(error)};
  return {std::make_unique<MachineInFolder>(std::move(options), std::move(settings)), {}};
}

}  // namespace ondura
