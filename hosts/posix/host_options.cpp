#include "host_options.h"

#include <CLI/CLI.hpp>

namespace ondura {

namespace {

constexpr const char* kExamples = R"(Examples:
  ondura-host service --root /srv/ondura
      runs the scheduler on the machine kept in /srv/ondura until SIGTERM
  ondura-host service --root ~/rehearsal --speed 100 --ticks 3
      runs three ticks with every wait cut to a hundredth
  ondura-host background --root /srv/ondura --period 60
      takes over from the service while it runs
  ondura-host elevated --root /srv/ondura --period 3
      dumps databases and starts the shadow copy for jobs that may not

SIGTERM and SIGINT let the running pass end; a second one leaves at once.
Exit codes: 0 left as asked, 1 unexpected failure, 2 bad options, root or configuration,
3 another host of the same kind runs on the machine.)";

void AddOptions(CLI::App& command, HostOptions& options) {
  command.add_option("--root", options.root, "Folder of the host that holds the machine")
      ->required()
      ->type_name("DIR");
  command.add_option("--install", options.install, "Install folder as the component sees it")
      ->capture_default_str()
      ->type_name("PATH");
  AddTickOptions(command, options);
  command.add_option("--speed", options.speed, "Divide every wait by this number, for rehearsals")
      ->check(CLI::Range(1, 1'000'000))
      ->capture_default_str()
      ->type_name("N");
}

}  // namespace

ParsedOptions ParseHostOptions(int argc, const char* const* argv) {
  HostOptions options;
  CLI::App app{"Runs the scheduled backup on a machine that is kept in a folder.", "ondura-host"};
  app.set_version_flag("--version", "ondura-host " ONDURA_VERSION);
  app.footer(kExamples);
  app.require_subcommand(1);
  CLI::App* const service = app.add_subcommand("service", "The scheduling service: ticks the component");
  CLI::App* const background =
      app.add_subcommand("background", "The twin in the user's session: runs the passes itself");
  CLI::App* const elevated =
      app.add_subcommand("elevated", "The elevated host: starts what takes more rights than a job has");
  AddOptions(*service, options);
  AddOptions(*background, options);
  AddOptions(*elevated, options);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return {std::nullopt, app.exit(error) == 0 ? 0 : kExitUsage};
  }
  if (background->parsed()) options.role = HostRole::kBackground;
  if (elevated->parsed()) options.role = HostRole::kElevated;
  return {std::move(options), 0};
}

}  // namespace ondura
