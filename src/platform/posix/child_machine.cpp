#include "platform/posix/child_machine.h"

#include <unistd.h>

#include <cstdlib>

#include "platform/posix/host_process.h"
#include "platform/posix/path_map.h"
#include "util/text.h"

namespace ondura {

namespace {

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

ChildMachine MakeChildMachine() {
  const std::string root = Variable("ONDURA_ROOT");
  if (root.empty()) {
    return {nullptr, {}, "ONDURA_ROOT is not set. This program is started by a machine in a folder."};
  }
  const auto speed = ParseInt16(Variable("ONDURA_SPEED"));
  PosixMachineResult made = MakePosixMachine({root, speed.value_or(1), {}});
  return {std::move(made.owner), OwnFolder(root), std::move(made.error)};
}

}  // namespace ondura
