// The mail helper on a machine that is kept in a folder.

#include <unistd.h>

#include <cstdlib>
#include <exception>
#include <iostream>

#include "mail_helper.h"
#include "platform/posix/host_process.h"
#include "platform/posix/path_map.h"
#include "platform/posix/posix_machine.h"
#include "tick_options.h"

namespace {

using namespace ondura;

// What a machine tells the programs that it starts.
std::string Variable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? std::string{} : std::string{value};
}

// Folder of the running program as the machine sees it; empty for a program outside of it.
std::string OwnFolder(const std::string& root) {
  const auto executable = ExecutableOf(getpid());
  const auto path = executable ? PathMap{root, {}}.UnderRoot(*executable) : std::nullopt;
  return path ? path->substr(0, path->rfind('\\') + 1) : std::string{};
}

int Run(int argc, char** argv) {
  const std::string root = Variable("ONDURA_ROOT");
  const std::string parameters = Variable("ONDURA_PARAMETERS");
  ParsedMailOptions parsed{MailOptions{root, OwnFolder(root), parameters}, 0};
  // A person's command line, as told by its form: an address begins with no hyphen.
  if (root.empty() || parameters.empty() || parameters.starts_with('-')) {
    parsed = ParseMailOptions({argv + 1, argv + argc}, {root, {}, {}});
  }
  if (!parsed.options) return parsed.exit_code;
  MailOptions& options = *parsed.options;
  const PosixMachineResult made = MakePosixMachine({options.root, 1, {}});
  if (!made.owner) {
    std::cerr << "OndruaEStartup: " << made.error << " Name it with --root.\n";
    return kExitUsage;
  }
  if (options.install.empty()) options.install = OwnFolder(options.root);
  const MailOutcome outcome = RunMailHelper(made.owner->machine(), options);
  if (!outcome.message.empty()) std::cerr << "OndruaEStartup: " << outcome.message << "\n";
  return outcome.exit_code;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(argc, argv);
  } catch (const std::exception& error) {
    std::cerr << "OndruaEStartup: " << error.what() << "\n";
  } catch (...) {
    std::cerr << "OndruaEStartup: stopped by an unknown error.\n";
  }
  return ondura::kExitFailure;
}
