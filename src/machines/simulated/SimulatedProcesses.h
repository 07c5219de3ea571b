#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "machines/simulated/MemoryDisk.h"
#include "machines/simulated/ProgramRun.h"
#include "machines/simulated/Timeline.h"
#include "platform/Processes.h"

namespace ondura {

// The process table of a simulated machine and the programs that can be started on it.
class SimulatedProcesses : public Processes {
 public:
  SimulatedProcesses(SimulatedMachine& machine, Timeline& timeline, MemoryDisk& disk,
                     const std::string& system_folder)
      : machine_(machine), timeline_(timeline), disk_(disk), system_folder_(system_folder) {}

  std::vector<ProcessEntry> List(ProcessSource source) override;
  ProgramState StateOf(std::string_view file) override;
  ProcessHandle Launch(const LaunchRequest& request) override;
  bool OpenForUser(const LaunchRequest& request) override;
  std::unique_ptr<PipedProgram> Start(const PipedRequest& request) override;
  std::string SystemPath(std::string_view path) override { return std::string{path}; }
  ProcessHandle OpenById(ProcessId id, ProcessAccess access) override;
  ProcessWait Wait(ProcessHandle handle, std::chrono::milliseconds limit) override;
  std::optional<std::uint32_t> ExitCode(ProcessHandle handle) override;
  ProcessId IdOf(ProcessHandle handle) override;
  bool Terminate(ProcessHandle handle, std::uint32_t exit_code) override;
  void Close(ProcessHandle handle) override { handles_.erase(handle); }
  bool EnablePrivilege(std::string_view name) override;
  void LowerOwnPriority() override { ++priority_lowerings_; }

  void Install(std::string_view path, Program program);
  void InstallPiped(std::string_view file, PipedScript script) {
    piped_[std::string{file}] = std::move(script);
  }
  void Uninstall(std::string_view path);
  ProcessId Put(std::string_view path, bool can_be_opened);
  void ActAs(std::string_view account) { account_ = account; }
  // The process is gone; what its script still had to do is dropped.
  void End(ProcessId id, std::uint32_t exit_code);
  // Whether the list shows the process.
  void Show(ProcessId id, bool is_listed) { processes_[id].is_listed = is_listed; }
  bool IsRunning(std::string_view base_name) const;

  const std::vector<LaunchRequest>& launches() const { return launches_; }
  const std::vector<LaunchRequest>& opened_for_user() const { return opened_for_user_; }
  const std::vector<std::string>& privileges() const { return privileges_; }
  std::size_t open_handles() const { return handles_.size(); }
  int priority_lowerings() const { return priority_lowerings_; }
  Timeline& timeline() { return timeline_; }

 private:
  struct Process {
    std::string path;
    std::string account;
    bool can_be_opened = true;
    bool is_listed = true;
    bool has_ended = false;
    std::uint32_t exit_code = kStillActive;
    std::unique_ptr<ProgramRun> run;  // null without a script
  };
  struct Handle {
    ProcessId id = 0;
    std::uint32_t access = 0;
  };

  ProcessId Start(const LaunchRequest& request);  // 0 when nothing was started
  struct Installed {
    std::string path;
    Program program;
  };

  [[nodiscard]] bool MayOpen(const Process& process) const;
  const Installed* FindProgram(const std::string& path) const;
  Process* ProcessOf(ProcessHandle handle);
  ProcessHandle NewHandle(ProcessId id, std::uint32_t access);
  ProcessId NewId();

  SimulatedMachine& machine_;
  Timeline& timeline_;
  MemoryDisk& disk_;
  const std::string& system_folder_;
  std::map<std::string, Installed> programs_;  // by folded path
  std::map<std::string, PipedScript> piped_;
  std::map<ProcessId, Process> processes_;
  std::map<ProcessHandle, Handle> handles_;
  std::string account_;
  ProcessId last_id_ = 1000;
  ProcessHandle last_handle_ = 0;
  std::vector<LaunchRequest> launches_;
  std::vector<LaunchRequest> opened_for_user_;
  std::vector<std::string> privileges_;
  int priority_lowerings_ = 0;
};

}  // namespace ondura
