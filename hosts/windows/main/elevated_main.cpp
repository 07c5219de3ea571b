// The elevated host: serves requests for shadow copies and database dumps.

#include <CLI/CLI.hpp>

#include "command_line.h"
#include "elevated_host.h"

namespace {

// A job looks for the answer every three seconds.
constexpr double kPeriodSeconds = 3;

constexpr const char* kFooter =
    R"(It needs the rights of an administrator. The service starts it, and starts it again when it has ended.
Its start reads the installation alone, so it may begin in the middle of a job.
It leaves at the end of the session, and when its hidden window is closed (taskkill /IM without /F).

Exit codes: 0 left as asked, 1 failure, 2 bad options, component or configuration missing,
3 another host of the same kind runs on this machine.)";

}  // namespace

int main() {
  return ondura::GuardedMain("OnduraElevated", [] {
    ondura::WindowsHostOptions options;
    options.period_seconds = kPeriodSeconds;
    CLI::App app{"Makes shadow copies and database dumps for backup jobs.", "OnduraElevated"};
    app.set_version_flag("--version", "OnduraElevated " ONDURA_VERSION);
    app.footer(kFooter);
    ondura::AddWindowsHostOptions(app, options);
    if (const auto code = ondura::ParseCommandLine(app)) return *code;
    const ondura::StopEvent stop;
    const ondura::ConsoleStop console(stop);
    const ondura::StopWindow window(stop);
    ondura::RunElevated(options, stop, ondura::UsualReporter("OnduraElevated"));
    return 0;
  });
}
