#include "machines/simulated/recording_ports.h"

namespace ondura {
namespace {

using enum CallKind;

std::string MillisecondsText(std::chrono::milliseconds duration) { return std::to_string(duration.count()); }

std::string RequestText(const LaunchRequest& request) { return request.file + ' ' + request.parameters; }

std::string NameText(const RegistryName& name) {
  std::string text = name.root == RegistryRoot::kLocalMachine ? "HKLM\\" : "HKCU\\";
  return text.append(name.key).append("\\").append(name.value);
}

}  // namespace

LocalTime RecordingClock::Now() {
  return gate_.Note(kLook, "Clock.Now", "", [&] { return ForwardingClock::Now(); });
}

void RecordingClock::Sleep(std::chrono::milliseconds duration) {
  gate_.Note(
      kLook, "Clock.Sleep", [&] { return MillisecondsText(duration); },
      [&] { ForwardingClock::Sleep(duration); });
}

void RecordingMessagePump::Pump() {
  gate_.Note(kLook, "MessagePump.Pump", "", [&] { ForwardingMessagePump::Pump(); });
}

std::optional<RegistryValue> RecordingRegistry::Read(const RegistryName& name, RegistryAccess access) {
  return gate_.Call(
      kLook, "Registry.Read", [&] { return NameText(name); }, std::optional<RegistryValue>{},
      [&] { return ForwardingRegistry::Read(name, access); });
}

bool RecordingRegistry::Write(const RegistryName& name, const RegistryValue& value) {
  return gate_.Call(
      kChange, "Registry.Write", [&] { return NameText(name); }, false,
      [&] { return ForwardingRegistry::Write(name, value); });
}

std::string RecordingProcesses::IdText(ProcessHandle handle) {
  return std::to_string(ForwardingProcesses::IdOf(handle));
}

std::vector<ProcessEntry> RecordingProcesses::List(ProcessSource source) {
  return gate_.Call(kLook, "Processes.List", "", std::vector<ProcessEntry>{},
                    [&] { return ForwardingProcesses::List(source); });
}

ProgramState RecordingProcesses::StateOf(std::string_view file) {
  return gate_.Call(kLook, "Processes.StateOf", PathArgument{file}, ProgramState::kMissing,
                    [&] { return ForwardingProcesses::StateOf(file); });
}

ProcessHandle RecordingProcesses::Launch(const LaunchRequest& request) {
  return gate_.Call(
      kChange, "Processes.Launch", [&] { return RequestText(request); }, kNoProcess,
      [&] { return ForwardingProcesses::Launch(request); });
}

bool RecordingProcesses::OpenForUser(const LaunchRequest& request) {
  return gate_.Call(
      kChange, "Processes.OpenForUser", [&] { return RequestText(request); }, false,
      [&] { return ForwardingProcesses::OpenForUser(request); });
}

std::unique_ptr<PipedProgram> RecordingProcesses::Start(const PipedRequest& request) {
  return gate_.Call(
      kChange, "Processes.Start", [&] { return request.file; }, std::unique_ptr<PipedProgram>{},
      [&] { return ForwardingProcesses::Start(request); });
}

ProcessHandle RecordingProcesses::OpenById(ProcessId id, ProcessAccess access) {
  return gate_.Call(kLook, "Processes.OpenById", std::to_string(id), kNoProcess,
                    [&] { return ForwardingProcesses::OpenById(id, access); });
}

ProcessWait RecordingProcesses::Wait(ProcessHandle handle, std::chrono::milliseconds limit) {
  return gate_.Note(
      kLook, "Processes.Wait", [&] { return MillisecondsText(limit); },
      [&] { return ForwardingProcesses::Wait(handle, limit); });
}

std::optional<std::uint32_t> RecordingProcesses::ExitCode(ProcessHandle handle) {
  return gate_.Call(
      kLook, "Processes.ExitCode", [&] { return IdText(handle); }, std::optional<std::uint32_t>{},
      [&] { return ForwardingProcesses::ExitCode(handle); });
}

ProcessId RecordingProcesses::IdOf(ProcessHandle handle) {
  return gate_.Call(
      kLook, "Processes.IdOf", [&] { return IdText(handle); }, ProcessId{0},
      [&] { return ForwardingProcesses::IdOf(handle); });
}

bool RecordingProcesses::Terminate(ProcessHandle handle, std::uint32_t exit_code) {
  return gate_.Call(
      kChange, "Processes.Terminate", [&] { return IdText(handle); }, false,
      [&] { return ForwardingProcesses::Terminate(handle, exit_code); });
}

void RecordingProcesses::Close(ProcessHandle handle) {
  gate_.Note(
      kLook, "Processes.Close", [&] { return IdText(handle); }, [&] { ForwardingProcesses::Close(handle); });
}

bool RecordingProcesses::EnablePrivilege(std::string_view name) {
  return gate_.Call(kLook, "Processes.EnablePrivilege", name, false,
                    [&] { return ForwardingProcesses::EnablePrivilege(name); });
}

void RecordingProcesses::LowerOwnPriority() {
  gate_.Note(kLook, "Processes.LowerOwnPriority", "", [&] { ForwardingProcesses::LowerOwnPriority(); });
}

SystemVersion RecordingSystemInfo::Version() {
  return gate_.Note(kLook, "SystemInfo.Version", "", [&] { return ForwardingSystemInfo::Version(); });
}

bool RecordingSystemInfo::IsWow64() {
  return gate_.Call(kLook, "SystemInfo.IsWow64", "", false, [&] { return ForwardingSystemInfo::IsWow64(); });
}

bool RecordingSystemInfo::Is64Bit() {
  return gate_.Call(kLook, "SystemInfo.Is64Bit", "", false, [&] { return ForwardingSystemInfo::Is64Bit(); });
}

std::string RecordingSystemInfo::ComputerName() {
  return gate_.Call(kLook, "SystemInfo.ComputerName", "", std::string{},
                    [&] { return ForwardingSystemInfo::ComputerName(); });
}

std::string RecordingLocaleInfo::Text(int kind) {
  return gate_.Call(kLook, "LocaleInfo.Text", std::to_string(kind), std::string{},
                    [&] { return ForwardingLocaleInfo::Text(kind); });
}

ConnectedState RecordingInternet::ExtendedState() {
  return gate_.Call(kLook, "Internet.ExtendedState", "", ConnectedState{},
                    [&] { return ForwardingInternet::ExtendedState(); });
}

bool RecordingInternet::IsConnected() {
  return gate_.Call(kLook, "Internet.IsConnected", "", false,
                    [&] { return ForwardingInternet::IsConnected(); });
}

InternetHandle RecordingWebRequests::Open(const WebSession& session) {
  return gate_.Call(kLook, "WebRequests.Open", session.agent, kNoInternet,
                    [&] { return ForwardingWebRequests::Open(session); });
}

InternetHandle RecordingWebRequests::Connect(InternetHandle session, std::string_view host,
                                             std::uint16_t port) {
  return gate_.Call(
      kLook, "WebRequests.Connect", [&] { return std::string{host} + ":" + std::to_string(port); },
      kNoInternet, [&] { return ForwardingWebRequests::Connect(session, host, port); });
}

InternetHandle RecordingWebRequests::OpenRequest(InternetHandle connection, const WebRequest& request) {
  return gate_.Call(
      kLook, "WebRequests.OpenRequest",
      [&] { return std::string{request.verb} + " " + std::string{request.object}; }, kNoInternet,
      [&] { return ForwardingWebRequests::OpenRequest(connection, request); });
}

bool RecordingWebRequests::AddHeaders(InternetHandle request, std::string_view headers, std::uint32_t flags) {
  return gate_.Call(kLook, "WebRequests.AddHeaders", headers, false,
                    [&] { return ForwardingWebRequests::AddHeaders(request, headers, flags); });
}

bool RecordingWebRequests::Send(InternetHandle request, std::string_view body) {
  return gate_.Call(kChange, "WebRequests.Send", "", false,
                    [&] { return ForwardingWebRequests::Send(request, body); });
}

std::optional<std::uint32_t> RecordingWebRequests::StatusCode(InternetHandle request) {
  return gate_.Call(kLook, "WebRequests.StatusCode", "", std::optional<std::uint32_t>{},
                    [&] { return ForwardingWebRequests::StatusCode(request); });
}

CryptoProvider RecordingCrypto::Acquire(std::string_view provider_name) {
  return gate_.Call(kLook, "Crypto.Acquire", provider_name, CryptoProvider{0},
                    [&] { return ForwardingCrypto::Acquire(provider_name); });
}

std::optional<Md5Digest> RecordingCrypto::Md5(std::string_view bytes) {
  return gate_.Call(kLook, "Crypto.Md5", "", std::optional<Md5Digest>{},
                    [&] { return ForwardingCrypto::Md5(bytes); });
}

std::optional<std::string> RecordingCrypto::StreamCipher(CryptoProvider provider, const StreamCipherKey& key,
                                                         std::string_view bytes, CipherDirection direction) {
  return gate_.Call(kLook, "Crypto.StreamCipher", "", std::optional<std::string>{},
                    [&] { return ForwardingCrypto::StreamCipher(provider, key, bytes, direction); });
}

int RecordingServices::State(std::string_view service_name, ServiceManagerAccess access) {
  return gate_.Call(kLook, "Services.State", service_name, 0,
                    [&] { return ForwardingServices::State(service_name, access); });
}

void RecordingDesktop::ShowMessage(std::string_view text, std::string_view title, MessageIcon icon) {
  gate_.Note(kChange, "Desktop.ShowMessage", text,
             [&] { ForwardingDesktop::ShowMessage(text, title, icon); });
}

ProcessId RecordingDesktop::ProcessOfWindow(WindowHandle window) {
  return gate_.Call(kLook, "Desktop.ProcessOfWindow", std::to_string(window), ProcessId{0},
                    [&] { return ForwardingDesktop::ProcessOfWindow(window); });
}

WindowHandle RecordingDesktop::FindTopWindow(std::string_view window_class, std::string_view title) {
  return gate_.Call(kLook, "Desktop.FindTopWindow", title, WindowHandle{0},
                    [&] { return ForwardingDesktop::FindTopWindow(window_class, title); });
}

bool RecordingDesktop::Show(WindowHandle window, WindowShow how) {
  return gate_.Call(kChange, "Desktop.Show", std::to_string(window), false,
                    [&] { return ForwardingDesktop::Show(window, how); });
}

bool RecordingDesktop::Post(WindowHandle window, std::uint32_t message) {
  return gate_.Call(kChange, "Desktop.Post", std::to_string(window), false,
                    [&] { return ForwardingDesktop::Post(window, message); });
}

bool RecordingPower::ExitWindows(std::uint32_t flags) {
  return gate_.Call(kChange, "Power.ExitWindows", std::to_string(flags), false,
                    [&] { return ForwardingPower::ExitWindows(flags); });
}

NameLookup RecordingNameResolution::AddressOf(std::string_view host_name) {
  return gate_.Call(kLook, "NameResolution.AddressOf", host_name, NameLookup{},
                    [&] { return ForwardingNameResolution::AddressOf(host_name); });
}

NameLookup RecordingNameResolution::NameOf(std::string_view address) {
  return gate_.Call(kLook, "NameResolution.NameOf", address, NameLookup{},
                    [&] { return ForwardingNameResolution::NameOf(address); });
}

MutexHandle RecordingNamedMutexes::Create(std::string_view name) {
  return gate_.Call(kChange, "NamedMutexes.Create", name, MutexHandle{0},
                    [&] { return ForwardingNamedMutexes::Create(name); });
}

bool RecordingNamedMutexes::Wait(MutexHandle handle, std::chrono::milliseconds limit) {
  return gate_.Call(
      kLook, "NamedMutexes.Wait", [&] { return MillisecondsText(limit); }, false,
      [&] { return ForwardingNamedMutexes::Wait(handle, limit); });
}

// Nothing that outlives a power cut, and a destructor's call.
void RecordingNamedMutexes::Release(MutexHandle handle) {
  gate_.Note(kLook, "NamedMutexes.Release", "", [&] { ForwardingNamedMutexes::Release(handle); });
}

void RecordingNamedMutexes::Close(MutexHandle handle) {
  gate_.Note(kLook, "NamedMutexes.Close", "", [&] { ForwardingNamedMutexes::Close(handle); });
}

void RecordingContinuousBackup::PostCDPStatusMsg(ContinuousBackupState state) {
  gate_.Note(kChange, "ContinuousBackup.PostCDPStatusMsg", std::to_string(static_cast<int>(state)),
             [&] { ForwardingContinuousBackup::PostCDPStatusMsg(state); });
}

void RecordingContinuousBackup::ValidateLocalDBDllVersion() {
  gate_.Note(kLook, "ContinuousBackup.ValidateLocalDBDllVersion", "",
             [&] { ForwardingContinuousBackup::ValidateLocalDBDllVersion(); });
}

}  // namespace ondura
