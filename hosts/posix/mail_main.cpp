// The mail helper on a machine that is kept in a folder.

#include <exception>
#include <iostream>

#include "machines/posix/PosixMachine.h"
#include "machines/posix/private_files.h"
#include "machines/posix/started_program.h"
#include "mail_helper.h"
#include "tick_options.h"

namespace {

using namespace ondura;

constexpr const char* kUsualInstall = R"(C:\Program Files\Ondura\)";

int Run(int argc, char** argv) {
  const StartedProgram started = ReadStartedProgram();
  ParsedMailOptions parsed{MailOptions{started.root, {}, started.parameters}, 0};
  // A person's command line, as told by its form: an address begins with no hyphen.
  if (started.root.empty() || started.parameters.empty() || started.parameters.starts_with('-')) {
    parsed = ParseMailOptions({argv + 1, argv + argc}, {started.root, {}, {}});
  }
  if (!parsed.options) return parsed.exit_code;
  MailOptions& options = *parsed.options;
  const PosixMachineResult made = MakePosixMachine({options.root, 1, {}});
  if (!made.owner) {
    std::cerr << "OndruaEStartup: " << made.error << " Name it with --root.\n";
    return kExitUsage;
  }
  if (options.install.empty()) options.install = OwnFolderIn(options.root);
  if (options.install.empty()) options.install = kUsualInstall;
  const MailOutcome outcome = RunMailHelper(made.owner->machine(), options);
  if (!outcome.message.empty()) std::cerr << "OndruaEStartup: " << outcome.message << "\n";
  return outcome.exit_code;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    ondura::KeepFilesPrivate();
    return Run(argc, argv);
  } catch (const std::exception& error) {
    std::cerr << "OndruaEStartup: " << error.what() << "\n";
  } catch (...) {
    std::cerr << "OndruaEStartup: stopped by an unknown error.\n";
  }
  return ondura::kExitFailure;
}
