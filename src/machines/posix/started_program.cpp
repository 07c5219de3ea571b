#include "machines/posix/started_program.h"

#include <unistd.h>

#include <cstdlib>

#include "machines/posix/HostProcess.h"
#include "machines/posix/PathMap.h"
#include "text/text.h"

namespace ondura {

namespace {

std::string Variable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? std::string{} : std::string{value};
}

}  // namespace

StartedProgram ReadStartedProgram() {
  return {.root = Variable("ONDURA_ROOT"),
          .speed = ParseInt16(Variable("ONDURA_SPEED")).value_or(1),
          .parameters = Variable("ONDURA_PARAMETERS")};
}

std::string OwnFolderIn(const std::string& root) {
  const auto executable = ExecutableOf(getpid());
  const auto path = executable ? PathMap{root, {}}.UnderRoot(*executable) : std::nullopt;
  return path ? path->substr(0, path->rfind('\\') + 1) : std::string{};
}

}  // namespace ondura
