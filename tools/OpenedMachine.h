#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "ProfileKeys.h"
#include "commands.h"
#include "machines/posix/PosixMachine.h"
#include "platform/machine.h"
#include "profile/Installation.h"
#include "util/MachineLock.h"

namespace ondura {

// A machine folder that was set up before, with its product configuration read.
class OpenedMachine {
 public:
  // Throws Failure (kUsage) if the folder does not exist or holds no configured machine.
  explicit OpenedMachine(const Globals& globals);

  [[nodiscard]] const Machine& machine() const { return owner_->machine(); }
  [[nodiscard]] const Installation& installation() const { return installation_; }
  // The machine's folder on the host, as a full path.
  [[nodiscard]] const std::string& root() const { return root_; }
  [[nodiscard]] const ProfileKeys& keys() const { return *keys_; }

  // The names of the user list, in its order, without empty ones.
  [[nodiscard]] std::vector<std::string> Users() const;

  // Keeps other commands and the hosts out of the shared files, for whoever changes them, until it is gone.
  // To be had before they are read. Throws Failure (kFailed) where somebody keeps it.
  [[nodiscard]] std::unique_ptr<MachineLock> LockForChange() const;

  // Makes the named user the current one, in the spelling of the user list. Throws Failure (kFailed) where
  // there is none.
  void Serve(std::string_view user);

  // True while the shared state says that a job of the current user runs, also when its schedule file is
  // idle again already.
  [[nodiscard]] bool IsServed() const;

  // The same without a look at the list: for a name that was taken from it, or is not in it yet.
  void ServeNew(const std::string& user) { installation_.CurrentUser = user; }

 private:
  std::unique_ptr<PosixMachine> owner_;
  std::string root_;
  Installation installation_;
  std::unique_ptr<ProfileKeys> keys_;
};

// The machine of an existing folder. Throws Failure (kUsage) where it can't be had.
std::unique_ptr<PosixMachine> OpenMachineFolder(const Globals& globals);

}  // namespace ondura
