#pragma once

#include "machines/simulated/CallGate.h"
#include "platform/forwarding.h"

namespace ondura {

// The ports beside files as the component sees them: each call passes the gate. The code page, which can't
// fail and changes nothing, is not among them.

class RecordingClock : public ForwardingClock {
 public:
  RecordingClock(Clock& next, CallGate& gate) : ForwardingClock(next), gate_(gate) {}
  LocalTime Now() override;
  void Sleep(std::chrono::milliseconds duration) override;

 private:
  CallGate& gate_;
};

class RecordingMessagePump : public ForwardingMessagePump {
 public:
  RecordingMessagePump(MessagePump& next, CallGate& gate) : ForwardingMessagePump(next), gate_(gate) {}
  void Pump() override;

 private:
  CallGate& gate_;
};

class RecordingRegistry : public ForwardingRegistry {
 public:
  RecordingRegistry(Registry& next, CallGate& gate) : ForwardingRegistry(next), gate_(gate) {}
  std::optional<RegistryValue> Read(const RegistryName& name, RegistryAccess access) override;
  bool Write(const RegistryName& name, const RegistryValue& value) override;

 private:
  CallGate& gate_;
};

// A terminated, queried or closed process is named by its id.
class RecordingProcesses : public ForwardingProcesses {
 public:
  RecordingProcesses(Processes& next, CallGate& gate) : ForwardingProcesses(next), gate_(gate) {}
  std::vector<ProcessEntry> List(ProcessSource source) override;
  ProgramState StateOf(std::string_view file) override;
  ProcessHandle Launch(const LaunchRequest& request) override;
  bool OpenForUser(const LaunchRequest& request) override;
  std::unique_ptr<PipedProgram> Start(const PipedRequest& request) override;
  ProcessHandle OpenById(ProcessId id, ProcessAccess access) override;
  ProcessWait Wait(ProcessHandle handle, std::chrono::milliseconds limit) override;
  std::optional<std::uint32_t> ExitCode(ProcessHandle handle) override;
  ProcessId IdOf(ProcessHandle handle) override;
  bool Terminate(ProcessHandle handle, std::uint32_t exit_code) override;
  void Close(ProcessHandle handle) override;
  bool EnablePrivilege(std::string_view name) override;
  void LowerOwnPriority() override;

 private:
  std::string IdText(ProcessHandle handle);

  CallGate& gate_;
};

class RecordingSystemInfo : public ForwardingSystemInfo {
 public:
  RecordingSystemInfo(SystemInfo& next, CallGate& gate) : ForwardingSystemInfo(next), gate_(gate) {}
  SystemVersion Version() override;
  bool IsWow64() override;
  bool Is64Bit() override;
  std::string ComputerName() override;

 private:
  CallGate& gate_;
};

class RecordingLocaleInfo : public ForwardingLocaleInfo {
 public:
  RecordingLocaleInfo(LocaleInfo& next, CallGate& gate) : ForwardingLocaleInfo(next), gate_(gate) {}
  std::string Text(int kind) override;

 private:
  CallGate& gate_;
};

class RecordingInternet : public ForwardingInternet {
 public:
  RecordingInternet(Internet& next, CallGate& gate) : ForwardingInternet(next), gate_(gate) {}
  ConnectedState ExtendedState() override;
  bool IsConnected() override;

 private:
  CallGate& gate_;
};

class RecordingWebRequests : public ForwardingWebRequests {
 public:
  RecordingWebRequests(WebRequests& next, CallGate& gate) : ForwardingWebRequests(next), gate_(gate) {}
  InternetHandle Open(const WebSession& session) override;
  InternetHandle Connect(InternetHandle session, std::string_view host, std::uint16_t port) override;
  InternetHandle OpenRequest(InternetHandle connection, const WebRequest& request) override;
  bool AddHeaders(InternetHandle request, std::string_view headers, std::uint32_t flags) override;
  bool Send(InternetHandle request, std::string_view body) override;
  std::optional<std::uint32_t> StatusCode(InternetHandle request) override;

 private:
  CallGate& gate_;
};

class RecordingCrypto : public ForwardingCrypto {
 public:
  RecordingCrypto(Crypto& next, CallGate& gate) : ForwardingCrypto(next), gate_(gate) {}
  CryptoProvider Acquire(std::string_view provider_name) override;
  std::optional<Md5Digest> Md5(std::string_view bytes) override;
  std::optional<std::string> StreamCipher(CryptoProvider provider, const StreamCipherKey& key,
                                          std::string_view bytes, CipherDirection direction) override;

 private:
  CallGate& gate_;
};

class RecordingServices : public ForwardingServices {
 public:
  RecordingServices(Services& next, CallGate& gate) : ForwardingServices(next), gate_(gate) {}
  int State(std::string_view service_name, ServiceManagerAccess access) override;

 private:
  CallGate& gate_;
};

class RecordingDesktop : public ForwardingDesktop {
 public:
  RecordingDesktop(Desktop& next, CallGate& gate) : ForwardingDesktop(next), gate_(gate) {}
  void ShowMessage(std::string_view text, std::string_view title, MessageIcon icon) override;
  ProcessId ProcessOfWindow(WindowHandle window) override;
  WindowHandle FindTopWindow(std::string_view window_class, std::string_view title) override;
  bool Show(WindowHandle window, WindowShow how) override;
  bool Post(WindowHandle window, std::uint32_t message) override;

 private:
  CallGate& gate_;
};

class RecordingPower : public ForwardingPower {
 public:
  RecordingPower(Power& next, CallGate& gate) : ForwardingPower(next), gate_(gate) {}
  bool ExitWindows(std::uint32_t flags) override;

 private:
  CallGate& gate_;
};

class RecordingNameResolution : public ForwardingNameResolution {
 public:
  RecordingNameResolution(NameResolution& next, CallGate& gate)
      : ForwardingNameResolution(next), gate_(gate) {}
  NameLookup AddressOf(std::string_view host_name) override;
  NameLookup NameOf(std::string_view address) override;

 private:
  CallGate& gate_;
};

class RecordingNamedMutexes : public ForwardingNamedMutexes {
 public:
  RecordingNamedMutexes(NamedMutexes& next, CallGate& gate) : ForwardingNamedMutexes(next), gate_(gate) {}
  MutexHandle Create(std::string_view name) override;
  bool Wait(MutexHandle handle, std::chrono::milliseconds limit) override;
  void Release(MutexHandle handle) override;
  void Close(MutexHandle handle) override;

 private:
  CallGate& gate_;
};

class RecordingContinuousBackup : public ForwardingContinuousBackup {
 public:
  RecordingContinuousBackup(ContinuousBackup& next, CallGate& gate)
      : ForwardingContinuousBackup(next), gate_(gate) {}
  void PostCDPStatusMsg(ContinuousBackupState state) override;
  void ValidateLocalDBDllVersion() override;

 private:
  CallGate& gate_;
};

}  // namespace ondura
