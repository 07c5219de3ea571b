#include "machines/simulated/SimulatedMachine.h"

#include "machines/libcrypto/LibcryptoCrypto.h"
#include "machines/simulated/RecordingFiles.h"
#include "machines/simulated/SimulatedFiles.h"
#include "machines/simulated/SimulatedProcesses.h"
#include "machines/simulated/Timeline.h"
#include "machines/simulated/recording_ports.h"
#include "machines/simulated/simulated_ports.h"
#include "machines/simulated/simulated_time.h"

namespace ondura {

struct SimulatedMachine::Parts {
  Parts(SimulatedMachine& owner, LocalTime start)
      : timeline(start), processes(owner, timeline, disk, surroundings.system_folder) {}

  Timeline timeline;
  MemoryDisk disk{[this] { return timeline.Now(); }};
  Surroundings surroundings;
  CallJournal journal;
  CallGate gate{journal};
  CodePageTable code_page;

  SimulatedClock clock{timeline, surroundings};
  SimulatedMessagePump pump{timeline};
  SimulatedFiles files{disk};
  SimulatedFolders folders{disk};
  SimulatedFileWatches watches{disk};
  SimulatedDrives drives{disk, surroundings};
  SimulatedProfileFiles profiles{disk, code_page};
  SimulatedRegistry registry;
  SimulatedProcesses processes;
  SimulatedSystemInfo system{surroundings};
  SimulatedLocaleInfo locale{surroundings};
  SimulatedInternet internet{surroundings};
  SimulatedWebRequests web{surroundings};
  LibcryptoCrypto crypto;
  SimulatedServices services{surroundings};
  SimulatedDesktop desktop{surroundings};
  SimulatedPower power{surroundings};
  SimulatedNameResolution names{surroundings};
  MutexTable mutex_table;
  SimulatedNamedMutexes own_mutexes{mutex_table, timeline, 1};
  SimulatedNamedMutexes mutexes{mutex_table, timeline, 2};
  SimulatedContinuousBackup continuous_backup{surroundings};

  RecordingClock recording_clock{clock, gate};
  RecordingMessagePump recording_pump{pump, gate};
  RecordingFiles recording_files{files, gate};
  RecordingFolders recording_folders{folders, gate};
  RecordingFileWatches recording_watches{watches, gate};
  RecordingDrives recording_drives{drives, gate};
  RecordingProfileFiles recording_profiles{profiles, gate};
  RecordingRegistry recording_registry{registry, gate};
  RecordingProcesses recording_processes{processes, gate};
  RecordingSystemInfo recording_system{system, gate};
  RecordingLocaleInfo recording_locale{locale, gate};
  RecordingInternet recording_internet{internet, gate};
  RecordingWebRequests recording_web{web, gate};
  RecordingCrypto recording_crypto{crypto, gate};
  RecordingServices recording_services{services, gate};
  RecordingDesktop recording_desktop{desktop, gate};
  RecordingPower recording_power{power, gate};
  RecordingNameResolution recording_names{names, gate};
  RecordingNamedMutexes recording_mutexes{own_mutexes, gate};
  RecordingContinuousBackup recording_continuous_backup{continuous_backup, gate};

  Machine outside{
      .clock = clock,
      .pump = pump,
      .files = files,
      .folders = folders,
      .watches = watches,
      .drives = drives,
      .profiles = profiles,
      .registry = registry,
      .processes = processes,
      .system = system,
      .locale = locale,
      .code_page = code_page,
      .internet = internet,
      .crypto = crypto,
      .services = services,
      .desktop = desktop,
      .power = power,
      .names = names,
      .mutexes = mutexes,
      .continuous_backup = continuous_backup,
      .web = web,
  };
  Machine machine{
      .clock = recording_clock,
      .pump = recording_pump,
      .files = recording_files,
      .folders = recording_folders,
      .watches = recording_watches,
      .drives = recording_drives,
      .profiles = recording_profiles,
      .registry = recording_registry,
      .processes = recording_processes,
      .system = recording_system,
      .locale = recording_locale,
      .code_page = code_page,
      .internet = recording_internet,
      .crypto = recording_crypto,
      .services = recording_services,
      .desktop = recording_desktop,
      .power = recording_power,
      .names = recording_names,
      .mutexes = recording_mutexes,
      .continuous_backup = recording_continuous_backup,
      .web = recording_web,
  };
};

SimulatedMachine::SimulatedMachine(LocalTime start) : parts_(std::make_unique<Parts>(*this, start)) {}
SimulatedMachine::~SimulatedMachine() = default;

const Machine& SimulatedMachine::machine() { return parts_->machine; }
const Machine& SimulatedMachine::outside() { return parts_->outside; }
MemoryDisk& SimulatedMachine::disk() { return parts_->disk; }
Surroundings& SimulatedMachine::surroundings() { return parts_->surroundings; }
CallJournal& SimulatedMachine::journal() { return parts_->journal; }

void SimulatedMachine::PutFile(std::string_view path, std::string_view bytes) {
  parts_->disk.PutFile(path, bytes);
}

void SimulatedMachine::PutFolder(std::string_view path) { parts_->disk.PutFolder(path); }

std::optional<std::string> SimulatedMachine::FileBytes(std::string_view path) {
  const MemoryDisk::Node* node = parts_->disk.Find(path);
  if (node == nullptr || node->is_folder) return std::nullopt;
  return node->bytes;
}

std::vector<std::string> SimulatedMachine::FilesUnder(std::string_view folder) {
  return parts_->disk.FilesUnder(folder);
}

std::string SimulatedMachine::ReadIni(std::string_view file, std::string_view section, std::string_view key) {
  return parts_->profiles.ReadLongString({file, section, key});
}

void SimulatedMachine::WriteIni(std::string_view file, std::string_view section, std::string_view key,
                                std::string_view value) {
  if (parts_->disk.Find(file) == nullptr) parts_->disk.PutFile(file, "");
  parts_->profiles.WriteString({file, section, key}, value);
}

LocalTime SimulatedMachine::Now() { return parts_->timeline.Now(); }
void SimulatedMachine::SetNow(LocalTime now) { parts_->timeline.SetNow(now); }

void SimulatedMachine::At(LocalTime moment, Action action) {
  After(parts_->timeline.Until(moment), std::move(action));
}

void SimulatedMachine::After(std::chrono::milliseconds delay, Action action) {
  parts_->timeline.After(delay, 0, std::move(action));
}

void SimulatedMachine::Advance(std::chrono::milliseconds duration) {
  parts_->timeline.Spend(duration, [] { return false; });
  parts_->timeline.Stir();
}

void SimulatedMachine::AdvanceTo(LocalTime moment) { Advance(parts_->timeline.Until(moment)); }

std::chrono::milliseconds SimulatedMachine::Elapsed() { return parts_->timeline.Elapsed(); }

void SimulatedMachine::SetPatience(std::chrono::hours longest, std::uint64_t most_waits) {
  parts_->timeline.SetPatience(longest, most_waits);
}

void SimulatedMachine::OnPump(Action hook) { parts_->pump.AddHook(std::move(hook)); }

void SimulatedMachine::InstallProgram(std::string_view path, Program program) {
  if (parts_->disk.Find(path) == nullptr) parts_->disk.PutFile(path, "MZ");
  parts_->processes.Install(path, std::move(program));
}

void SimulatedMachine::InstallPiped(std::string_view file, PipedScript script) {
  parts_->processes.InstallPiped(file, std::move(script));
}

void SimulatedMachine::RemoveProgram(std::string_view path) {
  parts_->disk.Erase(path);
  parts_->processes.Uninstall(path);
}

ProcessId SimulatedMachine::PutProcess(std::string_view path, Access access) {
  return parts_->processes.Put(path, access == Access::kOpen);
}

void SimulatedMachine::ActAs(std::string_view account) { parts_->processes.ActAs(account); }

void SimulatedMachine::EndProcess(ProcessId id, std::uint32_t exit_code) {
  parts_->processes.End(id, exit_code);
}

bool SimulatedMachine::IsRunning(std::string_view base_name) {
  return parts_->processes.IsRunning(base_name);
}

std::vector<LaunchRequest> SimulatedMachine::Launches() { return parts_->processes.launches(); }
std::vector<LaunchRequest> SimulatedMachine::OpenedForUser() { return parts_->processes.opened_for_user(); }
std::size_t SimulatedMachine::OpenHandles() { return parts_->processes.open_handles(); }
std::vector<std::string> SimulatedMachine::EnabledPrivileges() { return parts_->processes.privileges(); }
int SimulatedMachine::PriorityLowerings() { return parts_->processes.priority_lowerings(); }

void SimulatedMachine::PutRegistryValue(const RegistryName& name, const RegistryValue& value) {
  parts_->registry.Write(name, value);
}

void SimulatedMachine::HoldMutex(std::string_view name) { parts_->mutexes.Hold(name); }
void SimulatedMachine::LetGoOfMutex(std::string_view name) { parts_->mutexes.LetGo(name); }

}  // namespace ondura
