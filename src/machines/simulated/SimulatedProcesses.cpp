#include "machines/simulated/SimulatedProcesses.h"

#include <algorithm>

#include "text/text.h"

namespace ondura {
namespace {

constexpr std::uint32_t kAllAccess = 0x1F0FFF;
// Process ids and handles of the platform are multiples of four.
constexpr std::uint32_t kStep = 4;

// The system completes a bare name that has no ending.
std::string WithProgramEnding(const std::string& name) {
  return name.find('.') == std::string::npos ? name + ".exe" : name;
}

std::string Key(std::string_view path) { return ToLower(CleanPath(path)); }

class ScriptedProgram : public PipedProgram {
 public:
  explicit ScriptedProgram(PipedAnswer answer) : answer_(std::move(answer)) {}

  std::optional<PipedLine> NextLine(std::chrono::milliseconds /*limit*/) override {
    if (taken_ == answer_.lines.size()) return std::nullopt;
    return answer_.lines[taken_++];
  }
  std::optional<std::uint32_t> ExitCode() override {
    if (answer_.hangs || taken_ < answer_.lines.size()) return std::nullopt;
    return answer_.exit_code;
  }
  void Interrupt() override { answer_.hangs = false; }
  void Kill() override { answer_.hangs = false; }

 private:
  PipedAnswer answer_;
  std::size_t taken_ = 0;
};

}  // namespace

std::vector<ProcessEntry> SimulatedProcesses::List(ProcessSource source) {
  std::vector<ProcessEntry> entries;
  for (const auto& [id, process] : processes_) {
    if (process.has_ended) continue;
    std::string name{FileNameOf(process.path)};
    if (source == ProcessSource::kSnapshot) {
      entries.push_back({id, name, name});
    } else if (MayOpen(process) && process.is_listed) {
      entries.push_back({id, process.path, std::move(name)});
    }
  }
  return entries;
}

bool SimulatedProcesses::MayOpen(const Process& process) const {
  return process.can_be_opened && (account_.empty() || process.account == account_);
}

ProgramState SimulatedProcesses::StateOf(std::string_view file) {
  const std::string path{file};
  if (FindProgram(path) != nullptr) return ProgramState::kStartable;
  return disk_.FindReadable(path) != nullptr ? ProgramState::kRefused : ProgramState::kMissing;
}

ProcessHandle SimulatedProcesses::Launch(const LaunchRequest& request) {
  launches_.push_back(request);
  const ProcessId id = Start(request);
  return id != 0 ? NewHandle(id, kAllAccess) : kNoProcess;
}

bool SimulatedProcesses::OpenForUser(const LaunchRequest& request) {
  opened_for_user_.push_back(request);
  return Start(request) != 0;
}

std::unique_ptr<PipedProgram> SimulatedProcesses::Start(const PipedRequest& request) {
  const auto script = piped_.find(request.file);
  if (script == piped_.end()) return nullptr;
  return std::make_unique<ScriptedProgram>(script->second(request));
}

// A full path, or a bare name that is looked for in the working folder and then in the system's. Blanks at
// its end are no part of a file's name.
ProcessId SimulatedProcesses::Start(const LaunchRequest& request) {
  const std::string name{Trim(request.file)};
  const bool is_bare = name.find('\\') == std::string::npos;
  const std::string file = is_bare ? WithProgramEnding(name) : name;
  const Installed* installed = FindProgram(is_bare ? request.folder + '\\' + file : file);
  if (installed == nullptr && is_bare) installed = FindProgram(system_folder_ + '\\' + file);
  if (installed == nullptr) return 0;
  const Program program = installed->program;  // the script may install another in its place
  const ProcessId id = NewId();
  LaunchRequest full = request;
  full.file = installed->path;
  Process& process = processes_[id];
  process.path = installed->path;
  process.account = account_;
  process.run = std::make_unique<ProgramRun>(*this, machine_, id, std::move(full));
  timeline_.Stir();
  program(*process.run);
  process.run->started_ = true;
  process.run->EndIfDone();
  return id;
}

const SimulatedProcesses::Installed* SimulatedProcesses::FindProgram(const std::string& path) const {
  const auto found = programs_.find(Key(path));
  return found != programs_.end() && disk_.Find(path) != nullptr ? &found->second : nullptr;
}

ProcessHandle SimulatedProcesses::OpenById(ProcessId id, ProcessAccess access) {
  const auto found = processes_.find(id);
  if (found == processes_.end() || found->second.has_ended || !MayOpen(found->second)) return kNoProcess;
  return NewHandle(id, static_cast<std::uint32_t>(access));
}

ProcessWait SimulatedProcesses::Wait(ProcessHandle handle, std::chrono::milliseconds limit) {
  const Process* process = ProcessOf(handle);
  const auto has_ended = [&] { return process != nullptr && process->has_ended; };
  timeline_.Wait(limit, has_ended);
  return has_ended() ? ProcessWait::kEnded : ProcessWait::kTimedOut;
}

std::optional<std::uint32_t> SimulatedProcesses::ExitCode(ProcessHandle handle) {
  const Process* process = ProcessOf(handle);
  if (process == nullptr) return std::nullopt;
  return process->exit_code;
}

ProcessId SimulatedProcesses::IdOf(ProcessHandle handle) {
  const auto found = handles_.find(handle);
  return found != handles_.end() ? found->second.id : 0;
}

bool SimulatedProcesses::Terminate(ProcessHandle handle, std::uint32_t exit_code) {
  const Process* process = ProcessOf(handle);
  if (process == nullptr || process->has_ended) return false;
  const Handle held = handles_[handle];
  if ((held.access & static_cast<std::uint32_t>(ProcessAccess::kTerminate)) == 0) return false;
  End(held.id, exit_code);
  if (process->run != nullptr && process->run->on_terminated_) process->run->on_terminated_();
  return true;
}

bool SimulatedProcesses::EnablePrivilege(std::string_view name) {
  privileges_.emplace_back(name);
  return true;
}

void SimulatedProcesses::Install(std::string_view path, Program program) {
  programs_[Key(path)] = {CleanPath(path), std::move(program)};
}

void SimulatedProcesses::Uninstall(std::string_view path) { programs_.erase(Key(path)); }

ProcessId SimulatedProcesses::Put(std::string_view path, bool can_be_opened) {
  const ProcessId id = NewId();
  Process& process = processes_[id];
  process.path = path;
  process.can_be_opened = can_be_opened;
  return id;
}

void SimulatedProcesses::End(ProcessId id, std::uint32_t exit_code) {
  const auto found = processes_.find(id);
  if (found == processes_.end() || found->second.has_ended) return;
  found->second.has_ended = true;
  found->second.exit_code = exit_code;
  if (found->second.run != nullptr) found->second.run->has_ended_ = true;
  timeline_.DropAll(id);
  timeline_.Stir();
}

bool SimulatedProcesses::IsRunning(std::string_view base_name) const {
  return std::any_of(processes_.begin(), processes_.end(), [&](const auto& entry) {
    return !entry.second.has_ended && EqualsIgnoringCase(FileNameOf(entry.second.path), base_name);
  });
}

SimulatedProcesses::Process* SimulatedProcesses::ProcessOf(ProcessHandle handle) {
  const auto found = handles_.find(handle);
  return found != handles_.end() ? &processes_[found->second.id] : nullptr;
}

ProcessHandle SimulatedProcesses::NewHandle(ProcessId id, std::uint32_t access) {
  last_handle_ += static_cast<ProcessHandle>(kStep);
  handles_[last_handle_] = {id, access};
  return last_handle_;
}

ProcessId SimulatedProcesses::NewId() { return last_id_ += kStep; }

ProgramRun::ProgramRun(SimulatedProcesses& processes, SimulatedMachine& machine, ProcessId id,
                       LaunchRequest request)
    : processes_(processes), machine_(machine), id_(id), request_(std::move(request)) {}

void ProgramRun::After(std::chrono::milliseconds delay, Action action) {
  if (has_ended_) return;
  ++actions_to_come_;
  processes_.timeline().After(delay, id_, [this, act = std::move(action)] {
    --actions_to_come_;
    act();
    EndIfDone();
  });
}

void ProgramRun::Every(std::chrono::milliseconds period, Action action) {
  if (has_ended_) return;
  const auto recur = [this, period, act = std::move(action)] {
    act();
    Every(period, act);
  };
  processes_.timeline().After(period, id_, recur, Timeline::Hope::kNone);
}

void ProgramRun::ExitAfter(std::chrono::milliseconds delay, std::uint32_t code) {
  if (has_ended_) return;
  ++actions_to_come_;
  processes_.timeline().After(delay, id_, [this, code] { Exit(code); });
}

void ProgramRun::Exit(std::uint32_t code) { processes_.End(id_, code); }

void ProgramRun::AppearsAfter(std::chrono::milliseconds delay) {
  processes_.Show(id_, false);
  processes_.timeline().After(
      delay, id_, [this] { processes_.Show(id_, true); }, Timeline::Hope::kNone);
}

void ProgramRun::EndIfDone() {
  if (started_ && !goes_on_ && actions_to_come_ == 0) Exit(0);
}

}  // namespace ondura
