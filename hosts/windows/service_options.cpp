#include "service_options.h"

#include <CLI/CLI.hpp>
#include <sstream>

#include "own_program.h"

namespace ondura {

namespace {

constexpr const char* kFooter = R"(Examples, as an administrator:
  OnduraService register
      makes the component in this folder known to Windows, for a copy without an installer, and leaves the data
      folder to the system and to administrators
  OnduraService install
      installs the service of the product in this folder; it starts with Windows
  OnduraService start
  OnduraService stop
      lets a running job end
  OnduraService remove
  OnduraService allow OFFICE\ann --user ann
      lets the account run the user interface, and the twin, for the backup user ann
  OnduraService --console --ticks 3 --period 5
      runs in this window instead, without the service manager

Exit codes: 0 done or left as asked, 1 failure, 2 bad options, component or configuration missing,
3 another host of the same kind runs on this machine.)";

// A path after an option, in quotes; a backslash before the closing quote would escape it.
std::string QuotedFolder(std::string folder) {
  while (folder.size() > 3 && folder.ends_with('\\')) folder.pop_back();
  return '"' + folder + '"';
}

std::string InstallOption(const ServiceOptions& options) {
  return options.install == OwnFolder() ? std::string{} : " --install " + QuotedFolder(options.install);
}

CLI::App* AddAction(CLI::App& app, ServiceOptions& options, const char* name, ServiceAction action,
                    const char* text) {
  CLI::App* const command = app.add_subcommand(name, text);
  command->fallthrough();
  command->callback([&options, action] { options.action = action; });
  return command;
}

void AddWait(CLI::App& command, ServiceOptions& options) {
  command.add_option("--wait", options.wait_seconds, "Give up waiting after this time")
      ->check(CLI::Range(0, 86400))
      ->capture_default_str()
      ->type_name("SECONDS");
}

void AddRegistration(CLI::App& app, ServiceOptions& options) {
  CLI::App* const registration =
      AddAction(app, options, "register", ServiceAction::kRegister,
                "Registers the component and its event sources, and sets the rights on the data folder");
  registration->add_option("--data", options.data, "Also note this as the data folder")->type_name("PATH");
  registration->add_flag("--keep", options.keep, "Not where another data folder is noted already");
  registration->add_flag("--remember", options.remember, "Also note the folders for the next installer");
  AddAction(app, options, "unregister", ServiceAction::kUnregister, "Takes the registration back");
  AddAction(app, options, "recover", ServiceAction::kRecover,
            "Has Windows start the service again when it breaks off");
  CLI::App* const allow = AddAction(app, options, "allow", ServiceAction::kAllow,
                                    "Lets a Windows account work with the data of a backup user");
  allow->add_option("account", options.account, "Such as OFFICE\\ann")->required()->type_name("ACCOUNT");
  allow->add_option("--user", options.user, "The backup user")->required()->type_name("NAME");
}

}  // namespace

ParsedServiceOptions ParseServiceOptions() {
  ServiceOptions options;
  CLI::App app{"Runs the scheduled backups of this computer.", "OnduraService"};
  app.set_version_flag("--version", "OnduraService " ONDURA_VERSION);
  app.footer(kFooter);
  app.require_subcommand(0, 1);
  AddWindowsHostOptions(app, options);
  bool as_service = false;
  bool in_console = false;
  app.add_flag("--service", as_service, "Run under the service manager, which alone uses this");
  app.add_flag("--console", in_console, "Run in this window until Ctrl+C")->excludes("--service");
  AddAction(app, options, "install", ServiceAction::kInstall, "Installs the service");
  AddWait(*AddAction(app, options, "start", ServiceAction::kStart, "Starts it"), options);
  AddWait(*AddAction(app, options, "stop", ServiceAction::kStop, "Stops it, once its job has ended"),
          options);
  AddAction(app, options, "remove", ServiceAction::kRemove, "Removes it");
  AddRegistration(app, options);
  if (const auto code = ParseCommandLine(app)) return {std::nullopt, *code};
  if (in_console) options.action = ServiceAction::kConsole;
  const bool is_told = as_service || in_console || !app.get_subcommands().empty();
  if (!is_told) {
    std::cerr << app.help();
    return {std::nullopt, kExitUsage};
  }
  return {std::move(options), 0};
}

std::string ServiceCommandLine(const ServiceOptions& options) {
  std::ostringstream line;
  line << '"' << OwnPath() << "\" --service" << InstallOption(options);
  if (options.period_seconds != TickOptions{}.period_seconds) line << " --period " << options.period_seconds;
  if (options.engine_limit_hours != TickOptions{}.engine_limit_hours) {
    line << " --engine-limit " << options.engine_limit_hours;
  }
  return line.str();
}

std::string ElevatedCommandLine(const ServiceOptions& options) {
  return '"' + OwnFolder() + "OnduraElevated.exe\"" + InstallOption(options);
}

}  // namespace ondura
