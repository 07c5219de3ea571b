#pragma once

#include <map>
#include <string>

#include "machines/simulated/Timeline.h"
#include "machines/simulated/surroundings.h"
#include "platform/machine.h"

namespace ondura {

// The small ports, which answer from the surroundings and leave their traces there.

class SimulatedSystemInfo : public SystemInfo {
 public:
  explicit SimulatedSystemInfo(const Surroundings& surroundings) : surroundings_(surroundings) {}
  SystemVersion Version() override { return surroundings_.version; }
  bool IsWow64() override { return surroundings_.is_wow64; }
  bool Is64Bit() override { return surroundings_.is_64_bit || surroundings_.is_wow64; }
  std::string ComputerName() override { return surroundings_.computer_name; }

 private:
  const Surroundings& surroundings_;
};

class SimulatedLocaleInfo : public LocaleInfo {
 public:
  explicit SimulatedLocaleInfo(const Surroundings& surroundings) : surroundings_(surroundings) {}
  std::string Text(int kind) override;

 private:
  const Surroundings& surroundings_;
};

class SimulatedInternet : public Internet {
 public:
  explicit SimulatedInternet(const Surroundings& surroundings) : surroundings_(surroundings) {}
  ConnectedState ExtendedState() override { return surroundings_.connected_state; }
  bool IsConnected() override { return surroundings_.is_connected; }

 private:
  const Surroundings& surroundings_;
};

// Sessions, connections and requests that exist until they are closed; sending one shows it to the
// surroundings.
class SimulatedWebRequests : public WebRequests {
 public:
  explicit SimulatedWebRequests(Surroundings& surroundings) : surroundings_(surroundings) {}
  InternetHandle Open(const WebSession& session) override;
  InternetHandle Connect(InternetHandle session, std::string_view host, std::uint16_t port) override;
  InternetHandle OpenRequest(InternetHandle connection, const WebRequest& request) override;
  bool AddHeaders(InternetHandle request, std::string_view headers, std::uint32_t flags) override;
  bool SetNumber(InternetHandle handle, InternetOption option, std::uint32_t value) override;
  bool SetText(InternetHandle handle, InternetOption option, std::string_view value) override;
  bool Notify(InternetOption option) override;
  bool Send(InternetHandle request, std::string_view body) override;
  std::optional<std::uint32_t> StatusCode(InternetHandle request) override;
  std::optional<std::string> Header(InternetHandle request, std::uint32_t number) override;
  std::optional<std::string> LastResponse(std::uint32_t limit) override;
  void Close(InternetHandle handle) override;
  std::uint32_t LastError() override { return last_error_; }
  bool TrustAuthority(std::string_view certificate) override;

  [[nodiscard]] std::size_t OpenHandles() const { return handles_.size(); }

 private:
  enum class Level { kSession, kConnection, kRequest };
  // What is known so far: a connection carries what its session knew, a request what its connection knew.
  struct Handle {
    Level level = Level::kSession;
    InternetHandle parent = kNoInternet;
    SentWebRequest known;
    std::optional<WebAnswer> answer;
  };

  InternetHandle Add(Level level, InternetHandle parent, SentWebRequest known);
  Handle* Find(InternetHandle handle, Level level);
  bool FailWith(std::uint32_t error);

  Surroundings& surroundings_;
  std::map<InternetHandle, Handle> handles_;
  InternetHandle last_handle_ = kNoInternet;
  std::uint32_t last_error_ = 0;
};

class SimulatedServices : public Services {
 public:
  explicit SimulatedServices(const Surroundings& surroundings) : surroundings_(surroundings) {}
  int State(std::string_view service_name, ServiceManagerAccess access) override;

 private:
  const Surroundings& surroundings_;
};

class SimulatedDesktop : public Desktop {
 public:
  explicit SimulatedDesktop(Surroundings& surroundings) : surroundings_(surroundings) {}
  void ShowMessage(std::string_view text, std::string_view title, MessageIcon icon) override;
  ProcessId ProcessOfWindow(WindowHandle window) override;
  WindowHandle FindTopWindow(std::string_view window_class, std::string_view title) override;
  bool Show(WindowHandle window, WindowShow how) override;
  bool Post(WindowHandle window, std::uint32_t message) override;

 private:
  Surroundings& surroundings_;
};

class SimulatedPower : public Power {
 public:
  explicit SimulatedPower(Surroundings& surroundings) : surroundings_(surroundings) {}
  bool ExitWindows(std::uint32_t flags) override;

 private:
  Surroundings& surroundings_;
};

class SimulatedNameResolution : public NameResolution {
 public:
  explicit SimulatedNameResolution(const Surroundings& surroundings) : surroundings_(surroundings) {}
  NameLookup AddressOf(std::string_view host_name) override;
  NameLookup NameOf(std::string_view address) override;

 private:
  NameLookup Started() const;

  const Surroundings& surroundings_;
};

class SimulatedContinuousBackup : public ContinuousBackup {
 public:
  explicit SimulatedContinuousBackup(Surroundings& surroundings) : surroundings_(surroundings) {}
  void PostCDPStatusMsg(ContinuousBackupState state) override;
  void ValidateLocalDBDllVersion() override { ++surroundings_.database_validations; }

 private:
  Surroundings& surroundings_;
};

class SimulatedRegistry : public Registry {
 public:
  std::optional<RegistryValue> Read(const RegistryName& name, RegistryAccess access) override;
  bool Write(const RegistryName& name, const RegistryValue& value) override;

 private:
  std::map<std::string, RegistryValue> values_;  // by root, folded key and folded value name
};

// The mutexes that exist by name, and which process owns each.
struct MutexTable {
  static constexpr int kNobody = 0;
  struct Ownership {
    int process = kNobody;
    int times = 0;  // taken and not released
  };

  std::map<std::string, Ownership> owners;
  std::map<MutexHandle, std::string> handles;
  MutexHandle last_handle = 0;
};

// One process's view of the mutexes. `process` is its own number, not kNobody.
class SimulatedNamedMutexes : public NamedMutexes {
 public:
  SimulatedNamedMutexes(MutexTable& table, Timeline& timeline, int process)
      : table_(table), timeline_(timeline), process_(process) {}
  MutexHandle Create(std::string_view name) override;
  bool Wait(MutexHandle handle, std::chrono::milliseconds limit) override;
  void Release(MutexHandle handle) override;
  void Close(MutexHandle handle) override;

  void Hold(std::string_view name) { table_.owners[std::string(name)] = {process_, 1}; }
  void LetGo(std::string_view name);

 private:
  MutexTable& table_;
  Timeline& timeline_;
  int process_;
};

}  // namespace ondura
