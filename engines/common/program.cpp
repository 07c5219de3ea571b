#include "engines/common/program.h"

#include <exception>
#include <iostream>

#include "engines/common/ProgramMachine.h"
#include "profile/profile_paths.h"

namespace ondura::engines {

namespace {

int RunOnMachine(const char* name, const std::function<int(Client&)>& work) {
  const ChildMachine child = MakeChildMachine();
  if (!child.owner) {
    std::cerr << name << ": " << child.error << "\n";
    return kExitUnusable;
  }
  Client client(child.owner->machine(), child.folder);
  if (!client.Load()) {
    std::cerr << name << ": no product configuration in "
              << client.installation().DataFile(kConfigurationFile) << "; make one with 'ondura init'\n";
    return kExitUnusable;
  }
  return work(client);
}

}  // namespace

int RunProgram(const char* name, const std::function<int(Client&)>& work) {
  try {
    return RunOnMachine(name, work);
  } catch (const std::exception& failure) {
    std::cerr << name << ": " << failure.what() << "\n";
    return kExitBroken;
  }
}

}  // namespace ondura::engines
