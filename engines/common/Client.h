#pragma once

#include <string>
#include <string_view>

#include "platform/machine.h"
#include "profile/Installation.h"
#include "profile/ProfileStore.h"
#include "profile/Transfer.h"
#include "util/TextFiles.h"

namespace ondura::engines {

// What the server wants to know of a user.
struct Account {
  std::string name;
  std::string password;
  std::string encryption_password;
  std::string server;
};

// What each program of the client begins with: where it is installed, which product it belongs to, whose
// job is running, and the stores of that user.
class Client {
 public:
  Client(const Machine& machine, std::string_view install_folder);
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;

  // False without a readable product configuration.
  [[nodiscard]] bool Load();

  const Machine& machine() const { return machine_; }
  const Installation& installation() const { return installation_; }
  Transfer& transfer() { return transfer_; }
  ProfileStore& store() { return store_; }
  TextFiles& text_files() { return text_files_; }

  // Whose profile the calls from now on are about.
  void Serve(std::string_view user) { installation_.CurrentUser = user; }

  Account ReadAccount();

  // Keys of section BackupStatus in the user's profile. A missing key reads as empty.
  std::string ReadStatus(const ProfileKey& key);
  void WriteStatus(const ProfileKey& key, std::string_view value);

  // A number of section Demo in Deployment.ini beside the executables.
  int DeploymentNumber(std::string_view key, int fallback);

 private:
  const Machine machine_;
  Installation installation_;
  ProfileStore store_;
  Transfer transfer_;
  TextFiles text_files_;
};

}  // namespace ondura::engines
