#include "machines/simulated/simulated_ports.h"

#include <utility>

#include "machines/portable/inet_address.h"
#include "text/text.h"

namespace ondura {
namespace {

std::string RegistryKey(const RegistryName& name) {
  std::string_view key = name.key;
  while (key.starts_with('\\')) key.remove_prefix(1);
  while (key.ends_with('\\')) key.remove_suffix(1);
  const std::string root = name.root == RegistryRoot::kLocalMachine ? "machine" : "user";
  return root + '\n' + ToLower(key) + '\n' + ToLower(name.value);
}

}  // namespace

std::string SimulatedLocaleInfo::Text(int kind) {
  const auto found = surroundings_.locale_texts.find(kind);
  return found != surroundings_.locale_texts.end() ? found->second : "";
}

int SimulatedServices::State(std::string_view service_name, ServiceManagerAccess) {
  for (const auto& [name, state] : surroundings_.service_states) {
    if (EqualsIgnoringCase(name, service_name)) return state;
  }
  return 0;
}

void SimulatedDesktop::ShowMessage(std::string_view text, std::string_view title, MessageIcon icon) {
  surroundings_.messages.push_back({std::string(text), std::string(title), icon});
}

ProcessId SimulatedDesktop::ProcessOfWindow(WindowHandle window) {
  const auto found = surroundings_.windows.find(window);
  return found != surroundings_.windows.end() ? found->second.process : 0;
}

WindowHandle SimulatedDesktop::FindTopWindow(std::string_view window_class, std::string_view title) {
  for (const auto& [handle, window] : surroundings_.windows) {
    if (EqualsIgnoringCase(window.window_class, window_class) && EqualsIgnoringCase(window.title, title)) {
      return handle;
    }
  }
  return 0;
}

bool SimulatedDesktop::Show(WindowHandle window, WindowShow how) {
  const auto found = surroundings_.windows.find(window);
  if (found == surroundings_.windows.end()) return false;
  return std::exchange(found->second.is_shown, how != WindowShow::kHide);
}

bool SimulatedDesktop::Post(WindowHandle window, std::uint32_t message) {
  const auto found = surroundings_.windows.find(window);
  if (found == surroundings_.windows.end()) return false;
  found->second.posted.push_back(message);
  return true;
}

bool SimulatedPower::ExitWindows(std::uint32_t flags) {
  surroundings_.windows_exits.push_back(flags);
  return surroundings_.exits_windows;
}

NameLookup SimulatedNameResolution::Started() const {
  NameLookup lookup;
  lookup.started = surroundings_.name_resolution_starts;
  lookup.cleaned_up = lookup.started && surroundings_.name_resolution_cleans_up;
  return lookup;
}

NameLookup SimulatedNameResolution::AddressOf(std::string_view host_name) {
  NameLookup lookup = Started();
  for (const auto& [name, address] : surroundings_.addresses) {
    if (lookup.started && EqualsIgnoringCase(name, host_name)) lookup.found = address;
  }
  if (lookup.started && InetAddress(host_name)) lookup.found = host_name;
  return lookup;
}

NameLookup SimulatedNameResolution::NameOf(std::string_view address) {
  NameLookup lookup = Started();
  for (const auto& [name, its_address] : surroundings_.addresses) {
    if (lookup.started && !lookup.found && its_address == address) lookup.found = name;
  }
  lookup.is_address = lookup.started && InetAddress(address);
  return lookup;
}

void SimulatedContinuousBackup::PostCDPStatusMsg(ContinuousBackupState state) {
  surroundings_.continuous_backup_states.push_back(state);
  if (surroundings_.on_continuous_backup) surroundings_.on_continuous_backup(state);
}

std::optional<RegistryValue> SimulatedRegistry::Read(const RegistryName& name, RegistryAccess) {
  const auto found = values_.find(RegistryKey(name));
  if (found == values_.end()) return std::nullopt;
  return found->second;
}

bool SimulatedRegistry::Write(const RegistryName& name, const RegistryValue& value) {
  values_[RegistryKey(name)] = value;
  return true;
}

MutexHandle SimulatedNamedMutexes::Create(std::string_view name) {
  table_.owners.try_emplace(std::string(name), MutexTable::Ownership{process_, 1});
  table_.handles[++table_.last_handle] = name;
  return table_.last_handle;
}

bool SimulatedNamedMutexes::Wait(MutexHandle handle, std::chrono::milliseconds limit) {
  const auto held = table_.handles.find(handle);
  if (held == table_.handles.end()) return false;
  MutexTable::Ownership& owner = table_.owners[held->second];
  const auto is_to_be_had = [&] { return owner.process == MutexTable::kNobody || owner.process == process_; };
  timeline_.Wait(limit, is_to_be_had);
  if (!is_to_be_had()) return false;
  owner = {process_, owner.times + 1};
  return true;
}

void SimulatedNamedMutexes::Release(MutexHandle handle) {
  const auto held = table_.handles.find(handle);
  if (held != table_.handles.end()) LetGo(held->second);
}

// A mutex is gone with its last handle, unless another process holds it.
void SimulatedNamedMutexes::Close(MutexHandle handle) {
  const auto held = table_.handles.find(handle);
  if (held == table_.handles.end()) return;
  const std::string name = held->second;
  table_.handles.erase(held);
  const bool is_open_still = std::any_of(table_.handles.begin(), table_.handles.end(),
                                         [&](const auto& entry) { return entry.second == name; });
  const int owner = table_.owners[name].process;
  if (!is_open_still && (owner == MutexTable::kNobody || owner == process_)) table_.owners.erase(name);
}

void SimulatedNamedMutexes::LetGo(std::string_view name) {
  const auto found = table_.owners.find(std::string(name));
  if (found == table_.owners.end() || found->second.process != process_) return;
  if (--found->second.times == 0) found->second.process = MutexTable::kNobody;
}

}  // namespace ondura
