#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "machines/simulated/CallJournal.h"
#include "machines/simulated/MemoryDisk.h"
#include "machines/simulated/ProgramRun.h"
#include "machines/simulated/surroundings.h"
#include "platform/machine.h"

namespace ondura {

// A whole machine in memory under a virtual clock, for tests.
//
// The component works on machine(), whose calls are recorded, can be made to fail and can stop it dead.
// Tests, scripted programs and other actors work on the methods here or on outside(), which are neither
// recorded nor failed. Several components may work on one machine; they meet in its files and processes.
//
// Virtual time passes in Sleep, in the wait for a process or mutex and nowhere else; what is scheduled acts
// there, in order, each action at its own moment. A wait that nothing can end any more throws
// std::runtime_error.
class SimulatedMachine {
 public:
  using Action = std::function<void()>;

  static constexpr LocalTime kDefaultStart = std::chrono::local_days{std::chrono::year{2026} / 11 / 14} +
                                             std::chrono::hours{12} + std::chrono::minutes{30};

  explicit SimulatedMachine(LocalTime start = kDefaultStart);
  ~SimulatedMachine();
  SimulatedMachine(const SimulatedMachine&) = delete;
  SimulatedMachine& operator=(const SimulatedMachine&) = delete;

  // The machine as the component sees it.
  const Machine& machine();
  // The same machine as other processes see it.
  const Machine& outside();

  // Files and folders. Missing parents are made.
  void PutFile(std::string_view path, std::string_view bytes);
  void PutFolder(std::string_view path);
  std::optional<std::string> FileBytes(std::string_view path);
  std::vector<std::string> FilesUnder(std::string_view folder);  // whole paths, in name order
  std::string ReadIni(std::string_view file, std::string_view section, std::string_view key);
  void WriteIni(std::string_view file, std::string_view section, std::string_view key,
                std::string_view value);
  MemoryDisk& disk();

  // Time. SetNow changes the wall clock, forwards or backwards, as a person does: nothing acts, and what is
  // scheduled stays as far away as it was.
  LocalTime Now();
  void SetNow(LocalTime now);
  void At(LocalTime moment, Action action);  // at once when the moment has passed already
  void After(std::chrono::milliseconds delay, Action action);
  void Advance(std::chrono::milliseconds duration);  // lets everybody else act meanwhile
  void AdvanceTo(LocalTime moment);
  std::chrono::milliseconds Elapsed();  // virtual time since the machine was made; SetNow does not count
  // How long and how often the component may wait while nothing is scheduled. 400 days and 2,000,000 times
  // from the start.
  void SetPatience(std::chrono::hours longest, std::uint64_t most_waits);

  // Runs inside every Pump of the component. A hook that pumps itself is not entered again.
  void OnPump(Action hook);

  // Programs and processes. Installing puts a small file at the path; a program is started while both are
  // there. A second script at the path replaces the first for later starts.
  void InstallProgram(std::string_view path, Program program);
  void RemoveProgram(std::string_view path);
  // What Processes::Start finds under exactly this name.
  void InstallPiped(std::string_view file, PipedScript script);
  // A process that is there without a script, such as the tray. `access` says whether it can be opened.
  enum class Access { kOpen, kRefused };
  ProcessId PutProcess(std::string_view path, Access access = Access::kOpen);
  // The account that the component runs under from now on. It can't open the processes of other accounts; the
  // system's account, "", opens all.
  void ActAs(std::string_view account);
  void EndProcess(ProcessId id, std::uint32_t exit_code = 0);
  bool IsRunning(std::string_view base_name);
  std::vector<LaunchRequest> Launches();       // that reached the machine, started or not
  std::vector<LaunchRequest> OpenedForUser();  // the same for OpenForUser
  std::size_t OpenHandles();                   // of processes, not closed so far
  std::vector<std::string> EnabledPrivileges();
  int PriorityLowerings();

  // Registry values and mutexes of other processes.
  void PutRegistryValue(const RegistryName& name, const RegistryValue& value);
  void HoldMutex(std::string_view name);
  void LetGoOfMutex(std::string_view name);

  // Locale, system version, connection, services, names, messages shown, exits of Windows and the like.
  Surroundings& surroundings();

  // The record of calls, faults and the power cut; the shorter names are the frequent ones.
  CallJournal& journal();
  std::vector<std::string> Calls() { return journal().Calls(); }
  std::vector<std::string> CallsMatching(std::string_view pattern) {
    return journal().CallsMatching(pattern);
  }
  void ClearCalls() { journal().ClearCalls(); }
  void Fail(std::string_view pattern, int times = 1) { journal().Fail(pattern, times); }
  std::vector<std::string> UnfiredFaults() { return journal().UnfiredFaults(); }
  void StopDeadAt(std::size_t n, CutMoment moment = CutMoment::kBeforeEffect) {
    journal().StopDeadAt(n, moment);
  }

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace ondura
