#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <string_view>

#include "platform/machine.h"

namespace ondura {

// One backend's machine under test: drive C: is there and empty, the locale and settings are the defaults.
class TestedMachine {
 public:
  virtual ~TestedMachine() = default;

  virtual const Machine& machine() = 0;

  // The same machine as another process sees it.
  virtual const Machine& other() = 0;

  // Puts a program at `path` and gives the request that starts it; it lives for `lifetime` and leaves
  // with `exit_code`.
  virtual LaunchRequest PutProgram(std::string_view path, std::chrono::milliseconds lifetime,
                                   int exit_code) = 0;

  // Promises, by the story that tells them, that the system below this build does not keep and the backend
  // can't keep for it.
  [[nodiscard]] virtual bool Excuses(std::string_view /*story*/) const { return false; }
};

using MakeTestedMachine = std::unique_ptr<TestedMachine> (*)();

// The promises of the ports, kept by every backend alike. A backend takes part with one line,
// INSTANTIATE_TEST_SUITE_P(Name, PlatformContract, testing::Values(&Maker)).
class PlatformContract : public testing::TestWithParam<MakeTestedMachine> {
 protected:
  std::unique_ptr<TestedMachine> tested_ = GetParam()();
  const Machine& machine_ = tested_->machine();
  const Machine& other_ = tested_->other();

  void PutFile(std::string_view path, std::string_view bytes) const {
    ASSERT_TRUE(machine_.files.Write(path, bytes, IfPresent::kReplace)) << path;
  }
};

}  // namespace ondura
