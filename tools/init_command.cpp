#include <string>
#include <vector>

#include "commands.h"
#include "machine_setup.h"

namespace ondura {

namespace {

void AddProductOptions(CLI::App& init, MachinePlan& plan) {
  init.add_option("--product-number", plan.product_number, "Product line; 1 and 2 have rules of their own")
      ->check(CLI::Range(1, 32767))
      ->capture_default_str();
  init.add_option("--name", plan.name, "Product name, as shown in messages")->capture_default_str();
  init.add_option("--installation-name", plan.installation_name, "Root of every path and key")
      ->capture_default_str();
  init.add_option("--exe-group", plan.exe_group, "What the names of the executables begin with")
      ->capture_default_str();
  init.add_option("--caption", plan.caption, "Long product name, for mail")->capture_default_str();
  init.add_option("--language", plan.language, "Language of the product")
      ->check(CLI::IsMember({"English", "German", "French", "Spanish"}))
      ->capture_default_str();
  init.add_option("--domain", plan.domain, "Host name of the backup server");
}

void AddDeploymentOptions(CLI::App& init, MachinePlan& plan) {
  init.add_option("--server", plan.primary_server, "First default server address");
  init.add_option("--second-server", plan.secondary_server, "Second default server address");
  init.add_option("--notification-host", plan.notification_host, "Host that takes notification mail");
  init.add_option("--notification-authority", plan.notification_authority,
                  "Certificate authority to accept for that host, in PEM form, beside those of the system")
      ->check(CLI::ExistingFile)
      ->type_name("FILE");
}

void AddProgramOptions(CLI::App& init, MachinePlan& plan) {
  const auto add = [&](const char* name, std::string& file, const char* text) {
    init.add_option(name, file, text)->check(CLI::ExistingFile)->type_name("FILE");
  };
  add("--engine", plan.engine,
      "Engine to copy in under its configured name; the one for restic unless given");
  add("--scanner", plan.scanner, "Scanner to copy in");
  add("--database-manager", plan.database_manager, "Local database manager to copy in");
  init.add_option(
          "--store", plan.store,
          "Where backups go: a folder of the host or a store of restic; 'ondura store' changes it later")
      ->type_name("LOCATION");
}

}  // namespace

void AddInitCommand(CLI::App& app, const Globals& globals) {
  auto& init = *app.add_subcommand("init", "Makes the machine folder and the product's files in it");
  auto plan = std::make_shared<MachinePlan>();
  init.add_option("--data", plan->data_folder, "Data folder as the machine sees it")->capture_default_str();
  AddProductOptions(init, *plan);
  AddDeploymentOptions(init, *plan);
  AddProgramOptions(init, *plan);
  init.add_option("--drive", plan->drives, "A folder of the host as a drive, such as D=/srv/data; repeatable")
      ->type_name("LETTER=DIR")
      ->allow_extra_args(false);
  init.add_flag("--force", plan->force, "Rewrite the files of a machine that is there; users stay");
  init.footer("Example: ondura init --root /srv/machine --drive D=/srv/data --store /mnt/backup");
  init.callback([&globals, plan] { SetUpMachine(globals, *plan); });
}

}  // namespace ondura
