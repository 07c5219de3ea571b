#include "OpenedMachine.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "Failure.h"
#include "profile/installation_folders.h"
#include "profile/profile_paths.h"
#include "profile/user_list.h"
#include "text/text.h"

namespace ondura {

std::unique_ptr<PosixMachine> OpenMachineFolder(const Globals& globals) {
  if (globals.root.empty()) {
    throw Failure(Exit::kUsage, "which machine? Name its folder with --root DIR or in ONDURA_ROOT");
  }
  std::error_code error;
  if (!std::filesystem::is_directory(globals.root, error)) {
    throw Failure(Exit::kUsage, "there is no folder '" + globals.root +
                                    "'; make the machine with: ondura --root '" + globals.root + "' init");
  }
  PosixOptions options;
  options.root = globals.root;
  PosixMachineResult made = MakePosixMachine(std::move(options));
  if (!made.owner) throw Failure(Exit::kUsage, made.error);
  return std::move(made.owner);
}

OpenedMachine::OpenedMachine(const Globals& globals)
    : owner_(OpenMachineFolder(globals)), root_(std::filesystem::absolute(globals.root).string()) {
  if (!LoadInstallation(machine(), installation_, globals.install)) {
    throw Failure(Exit::kUsage, "'" + globals.root + "' holds no configured machine under '" +
                                    installation_.ExeLocation + "'; make one with: ondura --root '" +
                                    globals.root + "' init");
  }
  keys_ = std::make_unique<ProfileKeys>(machine(), installation_);
}

std::vector<std::string> OpenedMachine::Users() const {
  const std::string file = installation_.DataFile(kUserListFile);
  if (machine().files.Exists(file) && !machine().files.Read(file)) {
    throw Failure(Exit::kFailed, "can't read the user list '" + file + "'; look at its rights");
  }
  std::vector<std::string> names;
  ReadUserList(machine(), installation_.VirtualPath, names);
  std::erase(names, "");
  return names;
}

std::unique_ptr<MachineLock> OpenedMachine::LockForChange() const {
  auto lock = std::make_unique<MachineLock>(machine().mutexes, MachineLock::kPatienceOfAPerson);
  if (!lock->held()) {
    throw Failure(Exit::kFailed,
                  "another command or a host is changing this machine and does not end; nothing was changed. "
                  "Look for a stopped ondura or ondura-host, then try again");
  }
  return lock;
}

bool OpenedMachine::IsServed() const {
  return keys_->Read(profile_keys::kStarted) == "1" &&
         EqualsIgnoringCase(keys_->Read(profile_keys::kScheduled), installation_.CurrentUser);
}

void OpenedMachine::Serve(std::string_view user) {
  const auto names = Users();
  const auto found =
      std::ranges::find_if(names, [&](const std::string& name) { return EqualsIgnoringCase(name, user); });
  if (found == names.end()) {
    throw Failure(Exit::kFailed,
                  "there is no user '" + std::string{user} + "'; 'ondura user list' shows who there is");
  }
  installation_.CurrentUser = *found;
}

}  // namespace ondura
