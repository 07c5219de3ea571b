#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "TemporaryFolder.h"
#include "contract.h"
#include "machines/win32/Win32Machine.h"
#include "machines/win32/paths.h"
#include "machines/win32/windows_api.h"

namespace ondura {

namespace {

// Where Wine's own implementation of the calls differs from Windows.
constexpr std::string_view kNotKeptByWine[] = {
    "a line without a sign is no key",
    "a new key goes behind the last of its section",  // and the blank line after it is lost
    "keys beyond ASCII match in both cases",
    "what has ended can't be ended",
};

class OtherThread {
 public:
  ~OtherThread() { Do(nullptr); }

  // Returns when the work is done. No work at all ends the thread.
  void Do(std::function<void()> work) {
    std::unique_lock lock{mutex_};
    work_ = std::move(work);
    has_work_ = true;
    changed_.notify_all();
    changed_.wait(lock, [this] { return !has_work_; });
  }

 private:
  void Serve() {
    std::unique_lock lock{mutex_};
    for (bool is_last = false; !is_last; changed_.notify_all()) {
      changed_.wait(lock, [this] { return has_work_; });
      is_last = !work_;
      if (work_) work_();
      has_work_ = false;
    }
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  std::function<void()> work_;
  bool has_work_ = false;
  std::jthread thread_{[this] { Serve(); }};
};

class Win32UnderTest : public TestedMachine {
 public:
  ~Win32UnderTest() override {
    for (const HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) RegDeleteTreeA(root, kRegistryFolder);
  }

  const Machine& machine() override { return first_->machine(); }
  const Machine& other() override { return second_->machine(); }
  void AsOther(const std::function<void()>& work) override { thread_.Do(work); }
  std::string root() override { return folder_.path(); }

  bool PutFolderLink(std::string_view path, std::string_view folder) override {
    return ondura::PutFolderLink(path, folder);
  }

  void Protect(std::string_view path) override {
    SetFileAttributesW(WidePath(path).c_str(), FILE_ATTRIBUTE_READONLY);
  }

  LaunchRequest PutProgram(std::string_view path, std::chrono::milliseconds lifetime,
                           int exit_code) override {
    LaunchRequest request = PutTool(path, lifetime, exit_code);
    request.folder = root();
    return request;
  }

  [[nodiscard]] bool Excuses(std::string_view story) const override {
    return IsWine() && std::ranges::find(kNotKeptByWine, story) != std::end(kNotKeptByWine);
  }

 private:
  TemporaryFolder folder_;
  std::unique_ptr<Win32Machine> first_ = MakeWin32Machine();
  std::unique_ptr<Win32Machine> second_ = MakeWin32Machine();
  OtherThread thread_;
};

std::unique_ptr<TestedMachine> MakeWin32UnderTest() { return std::make_unique<Win32UnderTest>(); }

INSTANTIATE_TEST_SUITE_P(Win32, PlatformContract, testing::Values(&MakeWin32UnderTest));

}  // namespace

}  // namespace ondura
