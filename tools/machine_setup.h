#pragma once

#include <string>
#include <vector>

#include "commands.h"

namespace ondura {

// What a new machine is to look like. Empty texts are left to the system's own defaults.
struct MachinePlan {
  std::string data_folder = "C:\\ProgramData\\Ondura\\";
  int product_number = 3;
  std::string name = "Ondura";
  std::string installation_name = "Ondura";
  std::string exe_group = "Ondura";
  std::string caption = "Ondura Online Backup";
  std::string language = "English";
  std::string domain;
  std::string primary_server;
  std::string secondary_server;
  std::string notification_host;
  std::string notification_authority;  // a file of the host
  std::string engine;                  // programs to copy in: files of the host
  std::string scanner;
  std::string database_manager;
  std::string store;                // where the engine puts backups; empty: a folder in the data folder
  std::vector<std::string> drives;  // "D=/srv/data"
  bool force = false;
};

// Makes the folder and every file of a machine without users. Throws Failure where a machine is there
// already and `force` is off, or where something can't be written.
void SetUpMachine(const Globals& globals, const MachinePlan& plan);

}  // namespace ondura
