#include "engines/common/Client.h"

#include "profile/installation_folders.h"
#include "profile/profile_paths.h"
#include "text/text.h"

namespace ondura::engines {

Client::Client(const Machine& machine, std::string_view install_folder)
    : machine_(machine),
      store_(machine_, installation_),
      transfer_(machine_, installation_),
      text_files_(machine_.files, machine_.code_page) {
  installation_.ExeLocation = WithBackslash(install_folder);
}

bool Client::Load() {
  if (!LoadInstallation(machine_, installation_, installation_.ExeLocation)) return false;
  installation_.CurrentUser = Trim(transfer_.Trf_ReadUserNameProfile(profile_keys::kScheduled));
  if (installation_.CurrentUser.empty()) {
    installation_.CurrentUser = store_.ReadDefaultUser(profile_keys::kDefaultUser);
  }
  return true;
}

Account Client::ReadAccount() {
  Account account;
  account.name = transfer_.Trf_ReadUserProfile(profile_keys::kUserName);
  account.password = transfer_.Trf_ReadUserProfile(profile_keys::kPassword);
  account.encryption_password = transfer_.Trf_ReadUserProfileNew(profile_keys::kEncPasswordNew);
  if (account.encryption_password.empty()) {
    account.encryption_password = transfer_.Trf_ReadUserProfile(profile_keys::kEncPassword);
  }
  account.server = transfer_.Trf_ReadUserProfile(profile_keys::kServerIp);
  return account;
}

std::string Client::ReadStatus(const ProfileKey& key) {
  return std::string{Trim(store_.ReadProfileValue(key))};
}

void Client::WriteStatus(const ProfileKey& key, std::string_view value) {
  transfer_.Trf_WriteUserProfileDefault(key, value);
}

int Client::DeploymentNumber(std::string_view key, int fallback) {
  const std::string file = installation_.ExeLocation + std::string{kDeploymentFile};
  return machine_.profiles.ReadInt({file, "Demo", key}, fallback);
}

}  // namespace ondura::engines
