#include "demo/common/child_machine.h"

#include <unistd.h>

#include <cstdlib>
#include <utility>

#include "platform/posix/host_process.h"
#include "platform/posix/path_map.h"
#include "platform/posix/posix_machine.h"
#include "util/text.h"

namespace ondura::demo {

namespace {

class MachineInFolder : public ProgramMachine {
 public:
  explicit MachineInFolder(std::unique_ptr<PosixMachine> owner) : owner_(std::move(owner)) {}
  const Machine& machine() override { return owner_->machine(); }

 private:
  std::unique_ptr<PosixMachine> owner_;
};

std::string Variable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? std::string{} : std::string{value};
}

// Folder of the running program, with its backslash. Empty for a program outside of the machine.
std::string OwnFolder(const std::string& root) {
  const auto executable = ExecutableOf(getpid());
  const auto path = executable ? PathMap{root, {}}.UnderRoot(*executable) : std::nullopt;
  return path ? path->substr(0, path->rfind('\\') + 1) : std::string{};
}

}  // namespace

// The machine in a folder names itself to its programs by ONDURA_ROOT and ONDURA_SPEED of the environment.
ChildMachine MakeChildMachine() {
  const std::string root = Variable("ONDURA_ROOT");
  if (root.empty()) {
    return {nullptr, {}, "ONDURA_ROOT is not set. This program is started by a machine in a folder."};
  }
  const auto speed = ParseInt16(Variable("ONDURA_SPEED"));
  PosixMachineResult made = MakePosixMachine({root, speed.value_or(1), {}});
  if (!made.owner) return {nullptr, {}, std::move(made.error)};
  return {std::make_unique<MachineInFolder>(std::move(made.owner)), OwnFolder(root), {}};
}

}  // namespace ondura::demo
