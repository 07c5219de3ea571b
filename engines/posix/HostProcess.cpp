#include "engines/common/HostProcess.h"

#include <unistd.h>

#include "engines/common/command_line.h"

namespace ondura::engines {

namespace {

// A program that has lost its host gets another parent.
class Parent : public HostProcess {
 public:
  bool IsThere() override { return getppid() == parent_; }

 private:
  const pid_t parent_ = getppid();
};

}  // namespace

std::vector<std::string> ParameterWords(int count, const char* const* words) {
  return {words + 1, words + count};
}

std::string ParameterText(int count, const char* const* words) { return JoinWords(count, words); }

std::uint32_t OwnProcessId() { return static_cast<std::uint32_t>(getpid()); }

std::unique_ptr<HostProcess> WatchHost() { return std::make_unique<Parent>(); }

}  // namespace ondura::engines
