#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/machine.h"

namespace ondura {

// One backend's machine under test: the locale and settings are the defaults.
class TestedMachine {
 public:
  virtual ~TestedMachine() = default;

  virtual const Machine& machine() = 0;

  // The same machine as another process sees it.
  virtual const Machine& other() = 0;

  // Does the work where the other process does its own: a platform may give a mutex to a thread.
  virtual void AsOther(const std::function<void()>& work) { work(); }

  // An empty folder that belongs to the test, without a backslash at its end.
  virtual std::string root() { return "C:"; }

  // Puts a program at `path` and gives the request that starts it with the root as its folder; it lives
  // for `lifetime` and leaves with `exit_code`.
  virtual LaunchRequest PutProgram(std::string_view path, std::chrono::milliseconds lifetime,
                                   int exit_code) = 0;

  // Makes a file one that only force removes.
  virtual void Protect(std::string_view path) = 0;

  // Makes a link at `path` to a folder. False where the machine has none.
  virtual bool PutFolderLink(std::string_view /*path*/, std::string_view /*folder*/) { return false; }

  // A path of this length is too long for the system's simpler calls.
  [[nodiscard]] virtual std::size_t long_path() const { return 400; }

  // Promises, by the story that tells them, that the system below this build does not keep and the backend
  // can't keep for it.
  [[nodiscard]] virtual bool Excuses(std::string_view /*story*/) const { return false; }
};

// What a listing of the folder shows, in its order; folders with a backslash after their name.
inline std::vector<std::string> NamesIn(const Machine& machine, std::string_view folder) {
  std::vector<std::string> names;
  machine.folders.List(folder, [&](const FolderEntry& entry) {
    names.push_back(std::string{entry.name} + (entry.is_folder ? "\\" : ""));
    return Visit::kContinue;
  });
  return names;
}

using MakeTestedMachine = std::unique_ptr<TestedMachine> (*)();

// The registry's folder of the values that tests write.
inline constexpr const char* kRegistryFolder = R"(Software\Ondura tests)";

// The promises of the ports, kept by every backend alike. A backend takes part with one line,
// INSTANTIATE_TEST_SUITE_P(Name, PlatformContract, testing::Values(&Maker)).
class PlatformContract : public testing::TestWithParam<MakeTestedMachine> {
 protected:
  std::unique_ptr<TestedMachine> tested_ = GetParam()();
  const Machine& machine_ = tested_->machine();
  const Machine& other_ = tested_->other();
  const std::string root_ = tested_->root();
  const std::string drive_ = root_.substr(0, 2);
  const std::string ini_ = At("User.ini");

  // A path below the root.
  [[nodiscard]] std::string At(std::string_view name) const { return root_ + "\\" + std::string{name}; }

  [[nodiscard]] IniKey Key(std::string_view section, std::string_view key) const {
    return {ini_, section, key};
  }

  void PutFile(std::string_view path, std::string_view bytes) const {
    ASSERT_TRUE(machine_.files.Write(path, bytes, IfPresent::kReplace)) << path;
  }
};

}  // namespace ondura
