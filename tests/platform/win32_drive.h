#pragma once

#include <algorithm>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

#include "platform/forwarding.h"
#include "platform/win32/win32_machine.h"
#include "platform/win32/windows_api.h"

namespace ondura {

// Does its work on one thread of its own: the platform gives a mutex to a thread.
class OtherThread {
 public:
  OtherThread() : thread_([this] { Serve(); }) {}
  ~OtherThread() { Run(nullptr); }

  // Returns when the work is done. No work at all ends the thread.
  void Run(std::function<void()> work) {
    std::unique_lock lock{mutex_};
    work_ = std::move(work);
    has_work_ = true;
    changed_.notify_all();
    changed_.wait(lock, [this] { return !has_work_; });
  }

 private:
  void Serve() {
    std::unique_lock lock{mutex_};
    for (bool is_last = false; !is_last;) {
      changed_.wait(lock, [this] { return has_work_; });
      is_last = !work_;
      if (work_) work_();
      has_work_ = false;
      changed_.notify_all();
    }
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  std::function<void()> work_;
  bool has_work_ = false;
  std::jthread thread_;
};

class MutexesOfThread : public NamedMutexes {
 public:
  explicit MutexesOfThread(NamedMutexes& next) : next_(next) {}

  MutexHandle Create(std::string_view name) override {
    MutexHandle handle = 0;
    thread_.Run([&] { handle = next_.Create(name); });
    return handle;
  }
  bool Wait(MutexHandle handle, std::chrono::milliseconds limit) override {
    bool is_ours = false;
    thread_.Run([&] { is_ours = next_.Wait(handle, limit); });
    return is_ours;
  }
  void Release(MutexHandle handle) override {
    thread_.Run([&] { next_.Release(handle); });
  }
  void Close(MutexHandle handle) override {
    thread_.Run([&] { next_.Close(handle); });
  }

 private:
  NamedMutexes& next_;
  OtherThread thread_;
};

// Drive C: of a test is a folder of the real one.
class TestDrive {
 public:
  explicit TestDrive(std::string folder) : folder_(std::move(folder)) {}

  [[nodiscard]] std::string In(std::string_view path) const {
    const bool is_on_drive = path.starts_with("C:") || path.starts_with("c:");
    return is_on_drive ? folder_ + std::string{path.substr(2)} : std::string{path};
  }
  [[nodiscard]] std::string Out(std::string_view path) const {
    return path.starts_with(folder_) ? "C:" + std::string{path.substr(folder_.size())} : std::string{path};
  }

 private:
  std::string folder_;
};

class DriveFiles : public Files {
 public:
  DriveFiles(Files& next, const TestDrive& drive) : next_(next), drive_(drive) {}
  bool Exists(std::string_view path) override { return next_.Exists(drive_.In(path)); }
  std::optional<std::uint64_t> Size(std::string_view path) override { return next_.Size(drive_.In(path)); }
  std::optional<LocalTime> Modified(std::string_view path) override {
    return next_.Modified(drive_.In(path));
  }
  std::optional<std::string> Read(std::string_view path) override { return next_.Read(drive_.In(path)); }
  std::optional<std::string> ReadHead(std::string_view path, std::size_t limit_bytes) override {
    return next_.ReadHead(drive_.In(path), limit_bytes);
  }
  std::optional<std::string> ReadPart(std::string_view path, std::uint64_t offset,
                                      std::size_t limit_bytes) override {
    return next_.ReadPart(drive_.In(path), offset, limit_bytes);
  }
  bool Write(std::string_view path, std::string_view bytes, IfPresent if_present) override {
    return next_.Write(drive_.In(path), bytes, if_present);
  }
  bool Append(std::string_view path, std::string_view bytes, IfMissing if_missing) override {
    return next_.Append(drive_.In(path), bytes, if_missing);
  }
  bool Patch(std::string_view path, std::uint64_t offset, std::string_view bytes) override {
    return next_.Patch(drive_.In(path), offset, bytes);
  }
  std::unique_ptr<FileWriter> OpenWriter(std::string_view path, IfPresent if_present) override {
    return next_.OpenWriter(drive_.In(path), if_present);
  }
  std::unique_ptr<FileWriter> OpenAppender(std::string_view path, IfMissing if_missing) override {
    return next_.OpenAppender(drive_.In(path), if_missing);
  }
  bool Remove(std::string_view path, Removal removal) override {
    return next_.Remove(drive_.In(path), removal);
  }
  bool Copy(std::string_view from, std::string_view to) override {
    return next_.Copy(drive_.In(from), drive_.In(to));
  }

 private:
  Files& next_;
  const TestDrive& drive_;
};

class DriveFolders : public Folders {
 public:
  DriveFolders(Folders& next, const TestDrive& drive) : next_(next), drive_(drive) {}
  bool Exists(std::string_view path) override { return next_.Exists(drive_.In(path)); }
  bool Make(std::string_view path) override { return next_.Make(drive_.In(path)); }
  bool Remove(std::string_view path, Removal removal) override {
    return next_.Remove(drive_.In(path), removal);
  }
  bool List(std::string_view path, const std::function<Visit(const FolderEntry&)>& visit) override {
    return next_.List(drive_.In(path), visit);
  }

 private:
  Folders& next_;
  const TestDrive& drive_;
};

class DriveWatches : public FileWatches {
 public:
  DriveWatches(FileWatches& next, const TestDrive& drive) : next_(next), drive_(drive) {}
  std::unique_ptr<FileWatch> Watch(std::string_view path) override { return next_.Watch(drive_.In(path)); }

 private:
  FileWatches& next_;
  const TestDrive& drive_;
};

class DriveDrives : public ForwardingDrives {
 public:
  DriveDrives(Drives& next, const TestDrive& drive) : ForwardingDrives(next), drive_(drive) {}

  // The machine may have more drives than the one of the test.
  std::vector<std::string> Roots() override {
    auto roots = ForwardingDrives::Roots();
    std::erase_if(roots, [](const std::string& root) { return root != "C:\\"; });
    return roots;
  }
  std::optional<std::uint64_t> FreeBytes(std::string_view path) override {
    return ForwardingDrives::FreeBytes(drive_.In(path));
  }
  std::optional<std::uint64_t> TotalBytes(std::string_view path) override {
    return ForwardingDrives::TotalBytes(drive_.In(path));
  }
  std::string ShortPath(std::string_view path) override {
    return ForwardingDrives::ShortPath(drive_.In(path));
  }
  std::string LongPath(std::string_view path) override {
    return drive_.Out(ForwardingDrives::LongPath(drive_.In(path)));
  }

 private:
  const TestDrive& drive_;
};

class DriveProfiles : public ProfileFiles {
 public:
  DriveProfiles(ProfileFiles& next, const TestDrive& drive) : next_(next), drive_(drive) {}
  std::string ReadString(const IniKey& key) override { return next_.ReadString(In(key).key()); }
  std::string ReadLongString(const IniKey& key) override { return next_.ReadLongString(In(key).key()); }
  int ReadInt(const IniKey& key, int fallback) override { return next_.ReadInt(In(key).key(), fallback); }
  bool WriteString(const IniKey& key, std::string_view value) override {
    return next_.WriteString(In(key).key(), value);
  }

 private:
  struct KeyIn {
    std::string file;
    const IniKey& given;
    [[nodiscard]] IniKey key() const { return {file, given.section, given.key}; }
  };
  [[nodiscard]] KeyIn In(const IniKey& key) const { return {drive_.In(key.file), key}; }

  ProfileFiles& next_;
  const TestDrive& drive_;
};

inline constexpr std::string_view kRegistryFolder = R"(Software\Ondura tests\)";

// Keeps the values of tests apart from those of an installation.
class TestRegistry : public Registry {
 public:
  explicit TestRegistry(Registry& next) : next_(next) {}
  ~TestRegistry() override {
    for (const HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
      RegDeleteTreeA(root, std::string{kRegistryFolder.substr(0, kRegistryFolder.size() - 1)}.c_str());
    }
  }
  std::optional<RegistryValue> Read(const RegistryName& name, RegistryAccess access) override {
    const std::string key = std::string{kRegistryFolder}.append(name.key);
    return next_.Read({name.root, key, name.value}, access);
  }
  bool Write(const RegistryName& name, const RegistryValue& value) override {
    const std::string key = std::string{kRegistryFolder}.append(name.key);
    return next_.Write({name.root, key, name.value}, value);
  }

 private:
  Registry& next_;
};

class DriveProcesses : public ForwardingProcesses {
 public:
  DriveProcesses(Processes& next, const TestDrive& drive) : ForwardingProcesses(next), drive_(drive) {}

  std::vector<ProcessEntry> List(ProcessSource source) override {
    auto entries = ForwardingProcesses::List(source);
    for (ProcessEntry& entry : entries) entry.module_path = drive_.Out(entry.module_path);
    return entries;
  }

  // A process shows in the table once its first module is there, which takes the system a moment.
  ProcessHandle Launch(const LaunchRequest& request) override {
    const ProcessHandle handle = ForwardingProcesses::Launch(In(request));
    const ProcessId id = IdOf(handle);
    while (ExitCode(handle) == kStillActive && !IsListed(id)) ::Sleep(1);
    return handle;
  }
  bool OpenForUser(const LaunchRequest& request) override {
    return ForwardingProcesses::OpenForUser(In(request));
  }

 private:
  bool IsListed(ProcessId id) {
    const auto entries = ForwardingProcesses::List(ProcessSource::kModules);
    return std::ranges::any_of(entries, [&](const ProcessEntry& entry) { return entry.id == id; });
  }
  [[nodiscard]] LaunchRequest In(LaunchRequest request) const {
    request.file = drive_.In(request.file);
    request.folder = drive_.In(request.folder);
    return request;
  }

  const TestDrive& drive_;
};

// The running Windows as one process of a test sees it.
class DriveMachine {
 public:
  explicit DriveMachine(const TestDrive& drive) : drive_(drive) {}

  const Machine& machine() { return machine_; }

 private:
  const TestDrive& drive_;
  std::unique_ptr<Win32Machine> owner_ = MakeWin32Machine();
  const Machine& real_ = owner_->machine();
  DriveFiles files_{real_.files, drive_};
  DriveFolders folders_{real_.folders, drive_};
  DriveWatches watches_{real_.watches, drive_};
  DriveDrives drives_{real_.drives, drive_};
  DriveProfiles profiles_{real_.profiles, drive_};
  TestRegistry registry_{real_.registry};
  DriveProcesses processes_{real_.processes, drive_};
  MutexesOfThread mutexes_{real_.mutexes};

  Machine machine_{real_.clock,   real_.pump,      files_,         folders_,     watches_,
                   drives_,       profiles_,       registry_,      processes_,   real_.system,
                   real_.locale,  real_.code_page, real_.internet, real_.crypto, real_.services,
                   real_.desktop, real_.power,     real_.names,    mutexes_,     real_.continuous_backup,
                   real_.web};
};

}  // namespace ondura
