#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <map>
#include <utility>
#include <vector>

#include "machines/posix/HostProcess.h"
#include "machines/posix/command_line.h"
#include "machines/posix/piped_child.h"
#include "machines/posix/ports.h"
#include "machines/posix/spawn.h"
#include "text/text.h"

namespace ondura {

namespace {

constexpr int kBelowNormalNice = 10;

std::optional<pid_t> ProcessNumber(std::string_view name) {
  pid_t id = 0;
  const auto parsed = std::from_chars(name.data(), name.data() + name.size(), id);
  return parsed.ec == std::errc{} && parsed.ptr == name.data() + name.size() ? std::optional{id}
                                                                             : std::nullopt;
}

bool IsBareName(std::string_view file) { return file.find_first_of("\\/:") == std::string_view::npos; }

// The system completes a bare name that has no ending.
std::string WithProgramEnding(const std::string& name) {
  return name.find('.') == std::string::npos ? name + ".exe" : name;
}

// What the host's kernel starts: its own programs, and texts that name their reader.
bool BeginsAsProgram(const std::string& host_path) {
  const Fd file = OpenHost(host_path, O_RDONLY);
  std::array<char, 4> head{};
  const ssize_t length = file.valid() ? read(file.get(), head.data(), head.size()) : 0;
  const std::string_view start{head.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0))};
  return start ==
             "\x7F"
             "ELF" ||
         start.starts_with("#!");
}

bool MayTerminate(ProcessAccess access) {
  return (static_cast<std::uint32_t>(access) & static_cast<std::uint32_t>(ProcessAccess::kTerminate)) != 0;
}

// Real processes of the host. The table shows only those whose executable lies in the machine's folder, so
// that ending every process of a name never meets a stranger.
class PosixProcesses : public Processes {
 public:
  PosixProcesses(PathMap& paths, Clock& clock, const MachineSettings& settings, int speed)
      : paths_(paths), clock_(clock), settings_(settings), speed_(speed) {}

  std::vector<ProcessEntry> List(ProcessSource source) override {
    CollectEnded();
    std::vector<ProcessEntry> entries;
    const Fd table = OpenHost("/proc", O_RDONLY | O_DIRECTORY);
    if (!table.valid()) return entries;
    ListHost(table, [&](const HostEntry& entry) {
      const auto id = ProcessNumber(entry.name);
      auto module_path = id ? ModuleOf(*id, source) : std::nullopt;
      if (module_path) {
        std::string base_name{FileNameOf(*module_path)};
        entries.push_back({static_cast<ProcessId>(*id), *std::move(module_path), std::move(base_name)});
      }
      return true;
    });
    return entries;
  }

  ProgramState StateOf(std::string_view file) override {
    const auto host = ExistingFile(std::string{file});
    if (!host) return ProgramState::kMissing;
    return access(host->c_str(), X_OK) == 0 && BeginsAsProgram(*host) ? ProgramState::kStartable
                                                                      : ProgramState::kRefused;
  }

  ProcessHandle Launch(const LaunchRequest& request) override {
    CollectEnded();
    const auto file = FindExecutable(request);
    const auto folder = FindFolder(request.folder);
    if (!file || !folder) return kNoProcess;
    // Beside where it is, the program learns its parameters as they were before they were split: on Windows
    // too a program can have both.
    SpawnRequest spawn;
    spawn.file = *file;
    spawn.arguments = SplitCommandLine(request.parameters);
    spawn.folder = *folder;
    spawn.environment = {"ONDURA_ROOT=" + paths_.root(), "ONDURA_SPEED=" + std::to_string(speed_),
                         "ONDURA_PARAMETERS=" + request.parameters};
    spawn.lifetime = request.lifetime;
    const auto id = Spawn(spawn);
    if (!id) return kNoProcess;
    auto process = std::make_shared<HostProcess>(*id, HostProcess::Kinship::kChild);
    children_.push_back(process);
    return Hold(std::move(process), true);
  }

  bool OpenForUser(const LaunchRequest& request) override {
    LaunchRequest own = request;
    own.lifetime = Lifetime::kOutlivesStarter;
    const ProcessHandle handle = Launch(own);
    Close(handle);
    return handle != kNoProcess;
  }

  std::unique_ptr<PipedProgram> Start(const PipedRequest& request) override { return StartPiped(request); }

  std::string SystemPath(std::string_view path) override { return paths_.ForCreation(path); }

  ProcessHandle OpenById(ProcessId id, ProcessAccess access) override {
    CollectEnded();
    auto process = Find(static_cast<pid_t>(id));
    // A child is ours whatever it runs by now: a script may have handed over to a program of the host. The
    // look at the executable comes before the last test: a number that passed to another process between the
    // two would show as ended.
    const bool is_ours = process && (std::ranges::find(children_, process) != children_.end() ||
                                     ModuleOf(process->id()).has_value());
    if (!is_ours || process->HasEnded()) return kNoProcess;
    return Hold(std::move(process), MayTerminate(access));
  }

  ProcessWait Wait(ProcessHandle handle, std::chrono::milliseconds limit) override {
    const auto held = held_.find(handle);
    if (held == held_.end()) {
      clock_.Sleep(limit);
      return ProcessWait::kTimedOut;
    }
    const bool ended = held->second.process->WaitForEnd(std::chrono::nanoseconds{limit} / speed_);
    return ended ? ProcessWait::kEnded : ProcessWait::kTimedOut;
  }

  std::optional<std::uint32_t> ExitCode(ProcessHandle handle) override {
    const auto held = held_.find(handle);
    if (held == held_.end()) return std::nullopt;
    HostProcess& process = *held->second.process;
    return process.HasEnded() ? process.exit_code() : kStillActive;
  }

  ProcessId IdOf(ProcessHandle handle) override {
    const auto held = held_.find(handle);
    return held == held_.end() ? 0 : static_cast<ProcessId>(held->second.process->id());
  }

  bool Terminate(ProcessHandle handle, std::uint32_t exit_code) override {
    const auto held = held_.find(handle);
    return held != held_.end() && held->second.may_terminate && held->second.process->Kill(exit_code);
  }

  void Close(ProcessHandle handle) override { held_.erase(handle); }

  // What the host's user may do is settled when the host starts.
  bool EnablePrivilege(std::string_view /*name*/) override { return true; }

  void LowerOwnPriority() override {
    if (getpriority(PRIO_PROCESS, 0) < kBelowNormalNice) setpriority(PRIO_PROCESS, 0, kBelowNormalNice);
  }

 private:
  struct Held {
    std::shared_ptr<HostProcess> process;
    bool may_terminate = false;
  };

  ProcessHandle Hold(std::shared_ptr<HostProcess> process, bool may_terminate) {
    if (!process->valid()) return kNoProcess;
    ProcessHandle handle = 1;
    while (held_.contains(handle)) ++handle;
    held_[handle] = {std::move(process), may_terminate};
    return handle;
  }

  // The host keeps the executables of other accounts' processes to itself and shows their command lines,
  // which begin with the full path for every program that a machine has started.
  std::optional<std::string> ModuleOf(pid_t id, ProcessSource source = ProcessSource::kModules) const {
    auto executable = ExecutableOf(id);
    if (!executable && source == ProcessSource::kSnapshot) executable = CommandOf(id);
    return executable ? paths_.UnderRoot(*executable) : std::nullopt;
  }

  // An ended child stays in the host's table until it has been asked for its exit code.
  void CollectEnded() {
    std::erase_if(children_, [](const auto& child) { return child->HasEnded(); });
  }

  std::shared_ptr<HostProcess> Find(pid_t id) {
    for (const auto& child : children_) {
      if (child->id() == id) return child;
    }
    auto process = std::make_shared<HostProcess>(id, HostProcess::Kinship::kStranger);
    return process->valid() ? process : nullptr;
  }

  // Blanks at the end are no part of a file's name.
  std::optional<std::string> FindExecutable(const LaunchRequest& request) {
    const std::string name{Trim(request.file)};
    if (!IsBareName(name)) return ExistingFile(name);
    const std::string file = WithProgramEnding(name);
    auto found = ExistingFile(request.folder + "\\" + file);
    return found ? found : ExistingFile(settings_.system_folder + "\\" + file);
  }

  std::optional<std::string> ExistingFile(const std::string& path) {
    auto host = paths_.FindExisting(path);
    const auto status = host ? StatHost(*host) : std::nullopt;
    return status && S_ISREG(status->st_mode) ? host : std::nullopt;
  }

  // Empty for an empty folder; nothing for one that is not there.
  std::optional<std::string> FindFolder(const std::string& folder) {
    return folder.empty() ? std::optional{std::string{}} : paths_.FindExisting(folder);
  }

  PathMap& paths_;
  Clock& clock_;
  const MachineSettings& settings_;
  int speed_;
  std::map<ProcessHandle, Held> held_;
  std::vector<std::shared_ptr<HostProcess>> children_;
};

}  // namespace

std::unique_ptr<Processes> MakePosixProcesses(PathMap& paths, Clock& clock, const MachineSettings& settings,
                                              int speed) {
  return std::make_unique<PosixProcesses>(paths, clock, settings, speed);
}

}  // namespace ondura
