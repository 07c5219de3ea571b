// The background twin of the scheduling service, in the user's session.

#include <CLI/CLI.hpp>

#include "command_line.h"
#include "scheduling_host.h"

namespace {

constexpr const char* kFooter = R"(While it runs it is in charge, and the service does nothing.
It leaves at the end of the session, and when its hidden window is closed (taskkill /IM without /F).

Exit codes: 0 left as asked, 1 failure, 2 bad options, component or configuration missing,
3 another host of the same kind runs on this machine.)";

}  // namespace

int main() {
  return ondura::GuardedMain("OnduraBackground", [] {
    ondura::WindowsHostOptions options;
    CLI::App app{"Runs the scheduled backups in the session of a user.", "OnduraBackground"};
    app.set_version_flag("--version", "OnduraBackground " ONDURA_VERSION);
    app.footer(kFooter);
    ondura::AddWindowsHostOptions(app, options);
    if (const auto code = ondura::ParseCommandLine(app)) return *code;
    const ondura::StopEvent stop;
    const ondura::ConsoleStop console(stop);
    const ondura::StopWindow window(stop);
    ondura::RunBackground(options, stop, ondura::UsualReporter("OnduraBackground"));
    return 0;
  });
}
