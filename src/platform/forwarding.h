#pragma once

#include "platform/machine.h"

namespace ondura {

// For each port a wrapper that hands every call on to the port it was given, so that a fault, a recorder or
// another twist is a subclass with the one or two methods that differ. The wrapped port outlives it.

class ForwardingClock : public Clock {
 public:
  explicit ForwardingClock(Clock& next) : next_(next) {}
  LocalTime Now() override { return next_.Now(); }
  std::chrono::minutes UtcOffset(LocalTime local) override { return next_.UtcOffset(local); }
  void Sleep(std::chrono::milliseconds duration) override { next_.Sleep(duration); }

 private:
  Clock& next_;
};

class ForwardingMessagePump : public MessagePump {
 public:
  explicit ForwardingMessagePump(MessagePump& next) : next_(next) {}
  void Pump() override { next_.Pump(); }

 private:
  MessagePump& next_;
};

class ForwardingFileWriter : public FileWriter {
 public:
  explicit ForwardingFileWriter(std::unique_ptr<FileWriter> next) : next_(std::move(next)) {}
  bool Append(std::string_view bytes) override { return next_->Append(bytes); }

 private:
  std::unique_ptr<FileWriter> next_;
};

class ForwardingFiles : public Files {
 public:
  explicit ForwardingFiles(Files& next) : next_(next) {}
  bool Exists(std::string_view path) override { return next_.Exists(path); }
  std::optional<std::uint64_t> Size(std::string_view path) override { return next_.Size(path); }
  std::optional<LocalTime> Modified(std::string_view path) override { return next_.Modified(path); }
  std::optional<std::string> Read(std::string_view path) override { return next_.Read(path); }
  std::optional<std::string> ReadAlone(std::string_view path) override { return next_.ReadAlone(path); }
  std::optional<std::string> ReadTrusted(std::string_view path) override { return next_.ReadTrusted(path); }
  std::optional<std::string> ReadHead(std::string_view path, std::size_t limit_bytes) override {
    return next_.ReadHead(path, limit_bytes);
  }
  std::optional<std::string> ReadPart(std::string_view path, std::uint64_t offset,
                                      std::size_t limit_bytes) override {
    return next_.ReadPart(path, offset, limit_bytes);
  }
  bool Write(std::string_view path, std::string_view bytes, IfPresent if_present) override {
    return next_.Write(path, bytes, if_present);
  }
  bool Append(std::string_view path, std::string_view bytes, IfMissing if_missing) override {
    return next_.Append(path, bytes, if_missing);
  }
  bool Patch(std::string_view path, std::uint64_t offset, std::string_view bytes) override {
    return next_.Patch(path, offset, bytes);
  }
  std::unique_ptr<FileWriter> OpenWriter(std::string_view path, IfPresent if_present) override {
    return next_.OpenWriter(path, if_present);
  }
  std::unique_ptr<FileWriter> OpenAppender(std::string_view path, IfMissing if_missing) override {
    return next_.OpenAppender(path, if_missing);
  }
  bool Remove(std::string_view path, Removal removal) override { return next_.Remove(path, removal); }
  bool Copy(std::string_view from, std::string_view to) override { return next_.Copy(from, to); }

 private:
  Files& next_;
};

class ForwardingFolders : public Folders {
 public:
  explicit ForwardingFolders(Folders& next) : next_(next) {}
  bool Exists(std::string_view path) override { return next_.Exists(path); }
  bool Make(std::string_view path) override { return next_.Make(path); }
  bool Remove(std::string_view path, Removal removal) override { return next_.Remove(path, removal); }
  bool List(std::string_view path, const std::function<Visit(const FolderEntry&)>& visit) override {
    return next_.List(path, visit);
  }

 private:
  Folders& next_;
};

class ForwardingFileWatch : public FileWatch {
 public:
  explicit ForwardingFileWatch(std::unique_ptr<FileWatch> next) : next_(std::move(next)) {}
  bool MayHaveChanged() override { return next_->MayHaveChanged(); }

 private:
  std::unique_ptr<FileWatch> next_;
};

class ForwardingFileWatches : public FileWatches {
 public:
  explicit ForwardingFileWatches(FileWatches& next) : next_(next) {}
  std::unique_ptr<FileWatch> Watch(std::string_view path) override { return next_.Watch(path); }

 private:
  FileWatches& next_;
};

class ForwardingDrives : public Drives {
 public:
  explicit ForwardingDrives(Drives& next) : next_(next) {}
  std::vector<std::string> Roots() override { return next_.Roots(); }
  DriveKind KindOf(std::string_view root) override { return next_.KindOf(root); }
  std::optional<std::uint64_t> FreeBytes(std::string_view path) override { return next_.FreeBytes(path); }
  std::optional<std::uint64_t> TotalBytes(std::string_view path) override { return next_.TotalBytes(path); }
  std::string ShortPath(std::string_view path) override { return next_.ShortPath(path); }
  std::string LongPath(std::string_view path) override { return next_.LongPath(path); }
  std::string SystemFolder() override { return next_.SystemFolder(); }
  std::string LocalDataFolder() override { return next_.LocalDataFolder(); }

 private:
  Drives& next_;
};

class ForwardingProfileFiles : public ProfileFiles {
 public:
  explicit ForwardingProfileFiles(ProfileFiles& next) : next_(next) {}
  std::string ReadString(const IniKey& key) override { return next_.ReadString(key); }
  std::string ReadLongString(const IniKey& key) override { return next_.ReadLongString(key); }
  int ReadInt(const IniKey& key, int fallback) override { return next_.ReadInt(key, fallback); }
  bool WriteString(const IniKey& key, std::string_view value) override {
    return next_.WriteString(key, value);
  }

 private:
  ProfileFiles& next_;
};

class ForwardingRegistry : public Registry {
 public:
  explicit ForwardingRegistry(Registry& next) : next_(next) {}
  std::optional<RegistryValue> Read(const RegistryName& name, RegistryAccess access) override {
    return next_.Read(name, access);
  }
  bool Write(const RegistryName& name, const RegistryValue& value) override {
    return next_.Write(name, value);
  }

 private:
  Registry& next_;
};

class ForwardingProcesses : public Processes {
 public:
  explicit ForwardingProcesses(Processes& next) : next_(next) {}
  std::vector<ProcessEntry> List(ProcessSource source) override { return next_.List(source); }
  ProgramState StateOf(std::string_view file) override { return next_.StateOf(file); }
  ProcessHandle Launch(const LaunchRequest& request) override { return next_.Launch(request); }
  bool OpenForUser(const LaunchRequest& request) override { return next_.OpenForUser(request); }
  std::unique_ptr<PipedProgram> Start(const PipedRequest& request) override { return next_.Start(request); }
  std::string SystemPath(std::string_view path) override { return next_.SystemPath(path); }
  ProcessHandle OpenById(ProcessId id, ProcessAccess access) override { return next_.OpenById(id, access); }
  ProcessWait Wait(ProcessHandle handle, std::chrono::milliseconds limit) override {
    return next_.Wait(handle, limit);
  }
  std::optional<std::uint32_t> ExitCode(ProcessHandle handle) override { return next_.ExitCode(handle); }
  ProcessId IdOf(ProcessHandle handle) override { return next_.IdOf(handle); }
  bool Terminate(ProcessHandle handle, std::uint32_t exit_code) override {
    return next_.Terminate(handle, exit_code);
  }
  void Close(ProcessHandle handle) override { next_.Close(handle); }
  bool EnablePrivilege(std::string_view name) override { return next_.EnablePrivilege(name); }
  void LowerOwnPriority() override { next_.LowerOwnPriority(); }

 private:
  Processes& next_;
};

class ForwardingSystemInfo : public SystemInfo {
 public:
  explicit ForwardingSystemInfo(SystemInfo& next) : next_(next) {}
  SystemVersion Version() override { return next_.Version(); }
  bool IsWow64() override { return next_.IsWow64(); }
  bool Is64Bit() override { return next_.Is64Bit(); }
  std::string ComputerName() override { return next_.ComputerName(); }

 private:
  SystemInfo& next_;
};

class ForwardingLocaleInfo : public LocaleInfo {
 public:
  explicit ForwardingLocaleInfo(LocaleInfo& next) : next_(next) {}
  std::string Text(int kind) override { return next_.Text(kind); }

 private:
  LocaleInfo& next_;
};

class ForwardingCodePage : public CodePage {
 public:
  explicit ForwardingCodePage(CodePage& next) : next_(next) {}
  std::string FromUtf8(std::string_view text) override { return next_.FromUtf8(text); }
  std::string ToUtf8(std::string_view bytes) override { return next_.ToUtf8(bytes); }

 private:
  CodePage& next_;
};

class ForwardingInternet : public Internet {
 public:
  explicit ForwardingInternet(Internet& next) : next_(next) {}
  ConnectedState ExtendedState() override { return next_.ExtendedState(); }
  bool IsConnected() override { return next_.IsConnected(); }

 private:
  Internet& next_;
};

class ForwardingWebRequests : public WebRequests {
 public:
  explicit ForwardingWebRequests(WebRequests& next) : next_(next) {}
  InternetHandle Open(const WebSession& session) override { return next_.Open(session); }
  InternetHandle Connect(InternetHandle session, std::string_view host, std::uint16_t port) override {
    return next_.Connect(session, host, port);
  }
  InternetHandle OpenRequest(InternetHandle connection, const WebRequest& request) override {
    return next_.OpenRequest(connection, request);
  }
  bool AddHeaders(InternetHandle request, std::string_view headers, std::uint32_t flags) override {
    return next_.AddHeaders(request, headers, flags);
  }
  bool SetNumber(InternetHandle handle, InternetOption option, std::uint32_t value) override {
    return next_.SetNumber(handle, option, value);
  }
  bool SetText(InternetHandle handle, InternetOption option, std::string_view value) override {
    return next_.SetText(handle, option, value);
  }
  bool Notify(InternetOption option) override { return next_.Notify(option); }
  bool Send(InternetHandle request, std::string_view body) override { return next_.Send(request, body); }
  std::optional<std::uint32_t> StatusCode(InternetHandle request) override {
    return next_.StatusCode(request);
  }
  std::optional<std::string> Header(InternetHandle request, std::uint32_t number) override {
    return next_.Header(request, number);
  }
  std::optional<std::string> LastResponse(std::uint32_t limit) override { return next_.LastResponse(limit); }
  void Close(InternetHandle handle) override { next_.Close(handle); }
  std::uint32_t LastError() override { return next_.LastError(); }
  bool TrustAuthority(std::string_view certificate) override { return next_.TrustAuthority(certificate); }

 private:
  WebRequests& next_;
};

class ForwardingCrypto : public Crypto {
 public:
  explicit ForwardingCrypto(Crypto& next) : next_(next) {}
  CryptoProvider Acquire(std::string_view provider_name) override { return next_.Acquire(provider_name); }
  void Release(CryptoProvider provider) override { next_.Release(provider); }
  std::optional<Md5Digest> Md5(std::string_view bytes) override { return next_.Md5(bytes); }
  std::optional<std::string> StreamCipher(CryptoProvider provider, const StreamCipherKey& key,
                                          std::string_view bytes, CipherDirection direction) override {
    return next_.StreamCipher(provider, key, bytes, direction);
  }

 private:
  Crypto& next_;
};

class ForwardingServices : public Services {
 public:
  explicit ForwardingServices(Services& next) : next_(next) {}
  int State(std::string_view service_name, ServiceManagerAccess access) override {
    return next_.State(service_name, access);
  }

 private:
  Services& next_;
};

class ForwardingDesktop : public Desktop {
 public:
  explicit ForwardingDesktop(Desktop& next) : next_(next) {}
  void ShowMessage(std::string_view text, std::string_view title, MessageIcon icon) override {
    next_.ShowMessage(text, title, icon);
  }
  ProcessId ProcessOfWindow(WindowHandle window) override { return next_.ProcessOfWindow(window); }
  WindowHandle FindTopWindow(std::string_view window_class, std::string_view title) override {
    return next_.FindTopWindow(window_class, title);
  }
  bool Show(WindowHandle window, WindowShow how) override { return next_.Show(window, how); }
  bool Post(WindowHandle window, std::uint32_t message) override { return next_.Post(window, message); }

 private:
  Desktop& next_;
};

class ForwardingPower : public Power {
 public:
  explicit ForwardingPower(Power& next) : next_(next) {}
  bool ExitWindows(std::uint32_t flags) override { return next_.ExitWindows(flags); }

 private:
  Power& next_;
};

class ForwardingNameResolution : public NameResolution {
 public:
  explicit ForwardingNameResolution(NameResolution& next) : next_(next) {}
  NameLookup AddressOf(std::string_view host_name) override { return next_.AddressOf(host_name); }
  NameLookup NameOf(std::string_view address) override { return next_.NameOf(address); }

 private:
  NameResolution& next_;
};

class ForwardingNamedMutexes : public NamedMutexes {
 public:
  explicit ForwardingNamedMutexes(NamedMutexes& next) : next_(next) {}
  MutexHandle Create(std::string_view name) override { return next_.Create(name); }
  bool Wait(MutexHandle handle, std::chrono::milliseconds limit) override {
    return next_.Wait(handle, limit);
  }
  void Release(MutexHandle handle) override { next_.Release(handle); }
  void Close(MutexHandle handle) override { next_.Close(handle); }

 private:
  NamedMutexes& next_;
};

class ForwardingContinuousBackup : public ContinuousBackup {
 public:
  explicit ForwardingContinuousBackup(ContinuousBackup& next) : next_(next) {}
  void PostCDPStatusMsg(ContinuousBackupState state) override { next_.PostCDPStatusMsg(state); }
  void ValidateLocalDBDllVersion() override { next_.ValidateLocalDBDllVersion(); }

 private:
  ContinuousBackup& next_;
};

}  // namespace ondura
